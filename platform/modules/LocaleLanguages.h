#pragma once

#include <kelcore/platform/base.h>

#include <string_view>

namespace kel::platform {

/// The language of a locale, "de_AT.UTF-8" or "sr_RS@latin", as GetSystemDefaultLangID describes it.
LANGID LanguageOfLocale(std::string_view locale);

} // namespace kel::platform
