#include "platform/ThreadSettings.h"

#include "OrkPlatform.h"
#include "platform/ThreadLanguage.h"

namespace ORKBASE {

ThreadSettings::ThreadSettings() : wish_(WishedTag()), locale_(uselocale(nullptr)) {}

ThreadSettings::Scope::Scope(const ThreadSettings& settings) : own_(uselocale(nullptr)) {
  SetThreadLanguage(settings.wish_);
  uselocale(settings.locale_);
}

ThreadSettings::Scope::~Scope() {
  uselocale(own_);
}

}  // namespace ORKBASE
