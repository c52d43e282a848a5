# Writes the manual pages and completion scripts of the program VELORA below OUT.
function(print_to file)
  execute_process(COMMAND ${VELORA} ${ARGN} OUTPUT_VARIABLE text COMMAND_ERROR_IS_FATAL ANY)
  file(WRITE ${OUT}/${file} "${text}")
endfunction()

file(REMOVE_RECURSE ${OUT})
print_to(man1/velora.1 man)
# The page of the program lists every command in its last section.
file(STRINGS ${OUT}/man1/velora.1 lines REGEX "velora\\\\-[a-z\\\\-]+.*\\(1\\)")
foreach(line IN LISTS lines)
  string(REGEX REPLACE "^.*velora\\\\-([a-z\\\\-]+)\\\\fR\\(1\\).*$" "\\1" command "${line}")
  string(REPLACE "\\" "" command "${command}")
  print_to(man1/velora-${command}.1 man ${command})
endforeach()
print_to(velora.bash completion bash)
print_to(_velora completion zsh)
print_to(velora.fish completion fish)
