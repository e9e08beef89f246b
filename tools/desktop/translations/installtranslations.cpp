// SPDX-License-Identifier: LGPL-2.1-or-later
#include "installtranslations.h"

#include <QCoreApplication>
#include <QTranslator>

// A resource of a static library must be asked for outside of every namespace.
static void initializeResource() { Q_INIT_RESOURCE(translations); }

namespace Tidel {

namespace {

void install(QCoreApplication &application, const QLocale &locale, const QString &name, const QString &folder)
{
    auto *translator = new QTranslator(&application);
    if (translator->load(locale, name, QStringLiteral("_"), folder))
        QCoreApplication::installTranslator(translator);
    else
        delete translator;
}

} // namespace

void installTranslations(QCoreApplication &application, const QLocale &locale)
{
    initializeResource();
    install(application, locale, QStringLiteral("qtbase"), QStringLiteral(TIDEL_QT_TRANSLATIONS));
    install(application, locale, QStringLiteral("tidel-desktop"), QStringLiteral(":/translations"));
}

} // namespace Tidel
