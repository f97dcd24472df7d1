// CLocaleScope: number formatting in the "C" conventions whatever locale the host set.
//
// printf-style conversions follow the calling thread's locale, so a host that
// called setlocale(LC_ALL, "de_DE.UTF-8") would get "2,5" in files and texts.
// While a scope lives, the calling thread uses the "C" locale (a point as the
// decimal separator, no grouping); the thread's previous locale comes back at
// its end. Other threads are not affected.
#pragma once

#include <clocale>
#include <locale.h>

class CLocaleScope {
 public:
  CLocaleScope() : m_Previous(uselocale(CLocale())) {}
  ~CLocaleScope() {
    if (m_Previous) uselocale(m_Previous);
  }
  CLocaleScope(const CLocaleScope&) = delete;
  CLocaleScope& operator=(const CLocaleScope&) = delete;

 private:
  // Made once; never freed, as threads may still use it at exit.
  static locale_t CLocale() {
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(0));
    return locale;
  }

  locale_t m_Previous;
};
