// Option rows that more than one command has.
#pragma once

#include "Command.h"

namespace velora::cli {

// Every command has these four.
inline constexpr Option kCommonOptions[] = {
    {.name = "help", .letter = 'h', .help = "Print this help and end"},
    {.name = "version", .help = "Print the version and end"},
    {.name = "quiet",
     .letter = 'q',
     .help = "No progress, notes, warnings and summary; errors stay"},
    {.name = "verbose", .letter = 'v', .help = "Say more about what is done"},
};

inline constexpr Option kJsonOption = {.name = "json", .help = "Print JSON instead of text"};

inline constexpr Option kJobsOption = {
    .name = "jobs",
    .letter = 'j',
    .value = "N",
    .kind = ValueKind::kNumber,
    .help = "Work on N files at once; without it, one for each processor",
    .least = 1,
    .most = 1024};

inline constexpr Option kRecursiveOption = {
    .name = "recursive",
    .letter = 'r',
    .help = "Take all sound files below a directory that is named"};

inline constexpr Option kOutputOption = {.name = "output",
                                         .letter = 'o',
                                         .value = "FILE",
                                         .kind = ValueKind::kPath,
                                         .help = "Write to FILE; - is standard output"};

inline constexpr Option kForceOption = {
    .name = "force", .letter = 'f', .help = "Overwrite outputs that exist"};

inline constexpr Option kDryRunOption = {
    .name = "dry-run", .letter = 'n', .help = "Say what would be written, and write nothing"};

inline constexpr Option kStrictOption = {.name = "strict",
                                         .help = "End with status 1 where there was a warning"};

inline constexpr Option kNoFlushOption = {
    .name = "no-flush", .help = "Do not wait until what is written has reached the disk"};

}  // namespace velora::cli
