#include "authoring/SettledReading.h"

#include "authoring/AuthoringCall.h"

namespace ORKBASE {

void ReadSettled(AuthoringCall& call, std::u16string_view text, RuleReading& reading) {
  const MxDictionarys::Stamp before = call.Dictionaries().StampNow();
  call.Read(text, reading);
  if (call.Dictionaries().StampNow() == before) return;
  reading.words.clear();
  reading.refusals.clear();
  reading.composed.clear();
  call.Read(text, reading);
}

}  // namespace ORKBASE
