// SPDX-License-Identifier: LGPL-2.1-or-later
#include "statementtemplate_p.h"

#include <algorithm>

namespace {

// A literal where an operation has to begin is a syntax error, whatever follows it, comments included.
const QLatin1String refusal("\"refused: a value ends its place early\" ");

bool endsPlace(const QString &value, QLatin1Char opening)
{
    const auto isTerminator = [opening](QChar character) {
        switch (opening.toLatin1()) {
        // Whatever else an IRI forbids, the store refuses by itself. Not every one refuses \u003E, though: it
        // may stand for what it names before anything is parsed.
        case '<': return character == u'>' || character == u'\\';
        case '"': return character == u'"' || character == u'\\' || character == u'\n' || character == u'\r';
        default: return false;
        }
    };
    return std::any_of(value.cbegin(), value.cend(), isTerminator);
}

auto placeAt(QLatin1String text, const TemplateValues &values)
{
    return std::find_if(values.cbegin(), values.cend(),
                        [text](const auto &value) { return text.startsWith(value.first); });
}

} // namespace

QString fillTemplate(QLatin1String text, const TemplateValues &values)
{
    QString statement;
    bool refused = false;
    for (int i = 0; i < text.size();) {
        const auto place = text.at(i) == QLatin1Char('%') ? placeAt(text.mid(i), values) : values.cend();
        if (place == values.cend()) {
            statement += text.at(i++);
            continue;
        }
        refused = refused || (i > 0 && endsPlace(place->second, text.at(i - 1)));
        statement += place->second;
        i += int(place->first.size());
    }
    return refused ? refusal + statement : statement;
}
