// A property wizard with one fault on purpose, or with none: BROKEN names it.
//
// It knows every part but "no such part" and needs no catalogue, so that what a check
// finds is the fault alone.
#include <velora/I_VLRPropertyWizard.h>
#include <velora/ModuleExport.h>

#include <unistd.h>

#include <cstdlib>
#include <new>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

enum Fault {
  kSound,
  kSlotsSwapped,    // Init and SetOutPinNames
  kGettersSwapped,  // HasResourceError and GetPartNumber
  kRunsSwapped,     // Run and GenerateCode
  kReleaseMoved,    // Release behind Init
  kNullOut,         // crashes without a place for the object
  kThrows,          // Init of an unknown part
  kThrowsAtEntry,   // CreateServiceInstance
  kThrowsInRun,
  kSecondExport = 9,
  kLeaks,  // SetOutPinNames
  kLeaksInit,
  kLeaksWizards,
  kAnyId,
  kTouchesOut,
  kAnswersZero,
  kNoObject,
  kHangs,         // Init
  kCrashes,       // Release
  kKeepsPointer,  // the part number is the caller's text
  kOneForAll,     // every wizard is the same object
  kInitOnce,      // fails when repeated
  kLikesNullPart,
  kRunsWithoutProject,
  kTakesNullNames,
  kEndsProcess,
  kNoExport = 26,
};

constexpr Fault kFault = static_cast<Fault>(BROKEN);

using velora::I_ProjectHost;
using velora::I_WindowHost;

extern void* table[7];

/// An object whose table is made by hand, so that faults can stand anywhere in it.
class Wizard {
 public:
  Wizard() : table_(table) {}

  void* const* const table_;  // what a caller sees first
  const char* given = "";
  std::string part;
  bool bound = false;
  std::vector<std::string> names;
  char* volatile leaked = nullptr;
};

void Release(Wizard* self) {
  if (kFault == kCrashes) std::abort();
  if (kFault != kLeaksWizards && kFault != kOneForAll) delete self;
}

int32_t Init(Wizard* self, I_WindowHost*, const char* part) {
  if (kFault == kHangs) pause();
  if (kFault == kEndsProcess) _exit(0);
  if (kFault == kLeaksInit) self->leaked = new char[16];
  if (kFault == kInitOnce && self->bound) return 0;
  self->given = part;
  self->part = part ? part : "";
  self->bound = !self->part.empty() && self->part != "no such part";
  if (kFault == kThrows && part && !self->bound) throw std::runtime_error("unknown part");
  if (kFault == kLikesNullPart && !part) return 1;
  return self->bound ? 1 : 0;
}

int32_t Run(Wizard*, int32_t, I_ProjectHost* project, uint32_t, int32_t, int32_t, int32_t,
            int32_t) {
  if (kFault == kThrowsInRun) throw 5;
  if (kFault == kRunsWithoutProject && !project) return 1;
  return 2;
}

int32_t GenerateCode(Wizard*, int32_t, I_ProjectHost*, intptr_t, intptr_t) { return 0; }

int32_t HasResourceError(Wizard*) { return 0; }

int32_t SetOutPinNames(Wizard* self, const char* const* names, int32_t count) {
  if (kFault == kLeaks) self->leaked = new char[16];
  self->names.clear();
  if (!names) return kFault == kTakesNullNames ? 1 : 0;
  for (int32_t i = 0; i < count; ++i) self->names.emplace_back(names[i] ? names[i] : "");
  return 1;
}

const char* GetPartNumber(Wizard* self) {
  return kFault == kKeepsPointer ? self->given : self->part.c_str();
}

template <typename Operation>
void* Slot(Operation* operation) {
  return reinterpret_cast<void*>(operation);
}

void* table[] = {
    Slot(Release),          Slot(Init),           Slot(Run),          Slot(GenerateCode),
    Slot(HasResourceError), Slot(SetOutPinNames), Slot(GetPartNumber)};

/// Exchanges two operations before anyone looks.
const bool swapped = [] {
  if (kFault == kSlotsSwapped) std::swap(table[1], table[5]);
  if (kFault == kGettersSwapped) std::swap(table[4], table[6]);
  if (kFault == kRunsSwapped) std::swap(table[2], table[3]);
  if (kFault == kReleaseMoved) std::swap(table[0], table[1]);
  return true;
}();

void* Make() {
  if (kFault != kOneForAll) return new Wizard;
  static Wizard theOnly;
  return &theOnly;
}

}  // namespace

#if BROKEN == 26
[[maybe_unused]] static
#else
VELORA_EXPORT
#endif
    int32_t
    CreateServiceInstance(int32_t id, void** out) {
  if (kFault == kThrowsAtEntry) throw std::bad_alloc();
  if (kFault == kAnswersZero) return 0;
  if (kFault == kTouchesOut && out) *out = nullptr;
  if (id != velora::kWizardService && kFault != kAnyId) return 0;
  if (!out && kFault != kNullOut) return 0;
  if (kFault == kNoObject) return 1;
  *out = Make();
  return swapped ? 1 : 0;
}

#if BROKEN == 9
VELORA_EXPORT int32_t DebugInfo() { return 1; }
#endif
