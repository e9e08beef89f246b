// SPDX-License-Identifier: LGPL-2.1-or-later
#include "monthnames.h"

#include <QHash>
#include <QLocale>
#include <QStringList>

#include <algorithm>

namespace Tidel {

namespace {

/// \a word in small letters, without accents and full stops.
QString plainLetters(const QString &word)
{
    QString letters;
    const QString decomposed = word.normalized(QString::NormalizationForm_D);
    std::copy_if(decomposed.begin(), decomposed.end(), std::back_inserter(letters),
                 [](QChar c) { return c.isLetter(); });
    return letters.toLower();
}

/// Adds the beginnings of \a name. One that begins several months stands for 0.
void addBeginnings(const QString &name, int month, QHash<QString, int> &months)
{
    const QString letters = plainLetters(name);
    for (int length = 3; length <= letters.size(); ++length) {
        const QString beginning = letters.left(length);
        const bool isAmbiguous = months.value(beginning, month) != month;
        months.insert(beginning, isAmbiguous ? 0 : month);
    }
}

QHash<QString, int> monthsByBeginning()
{
    QHash<QString, int> months;
    for (const QLocale::Language language :
         {QLocale::English, QLocale::Dutch, QLocale::French, QLocale::German, QLocale::Italian,
          QLocale::Portuguese, QLocale::Spanish}) {
        const QLocale locale(language);
        for (int month = 1; month <= 12; ++month) {
            addBeginnings(locale.monthName(month, QLocale::LongFormat), month, months);
            addBeginnings(locale.monthName(month, QLocale::ShortFormat), month, months);
        }
    }
    return months;
}

} // namespace

int englishMonthNumber(const QChar *name)
{
    static const char names[][4] = {"jan", "feb", "mar", "apr", "may", "jun",
                                    "jul", "aug", "sep", "oct", "nov", "dec"};
    const auto letterAt = [&](int i) { return char(name[i].toLatin1() | 0x20); };
    for (int month = 0; month < 12; ++month) {
        const auto &candidate = names[month];
        if (candidate[0] == letterAt(0) && candidate[1] == letterAt(1) && candidate[2] == letterAt(2))
            return month + 1;
    }
    return 0;
}

int monthNumber(const QString &word)
{
    static const QHash<QString, int> months = monthsByBeginning();
    return months.value(plainLetters(word));
}

int misspelledMonthNumber(const QString &word) { return monthNumber(word.left(3)); }

bool isDayName(const QString &word)
{
    static const QStringList names{QStringLiteral("mon"), QStringLiteral("tue"), QStringLiteral("wed"),
                                   QStringLiteral("thu"), QStringLiteral("fri"), QStringLiteral("sat"),
                                   QStringLiteral("sun")};
    return names.contains(word.left(3).toLower());
}

} // namespace Tidel
