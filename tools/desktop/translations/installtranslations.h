// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DESKTOP_INSTALLTRANSLATIONS_H
#define TIDEL_DESKTOP_INSTALLTRANSLATIONS_H

#include <QLocale>

QT_FORWARD_DECLARE_CLASS(QCoreApplication)

namespace Tidel {

/// Translates the texts of \a application and of Qt into the language of \a locale, as far as there are
/// translations. Call it before anything is shown.
void installTranslations(QCoreApplication &application, const QLocale &locale = QLocale());

} // namespace Tidel

#endif
