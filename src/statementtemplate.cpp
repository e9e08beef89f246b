// SPDX-License-Identifier: LGPL-2.1-or-later
#include "statementtemplate_p.h"

#include <algorithm>

namespace {

// A literal at the beginning of an operation is a syntax error, whatever follows it.
const QLatin1String refusal("\"refused: a value ends its place early\" ");

bool endsPlace(const QString &value, QLatin1Char opening)
{
    const auto isTerminator = [opening](QChar character) {
        switch (opening.toLatin1()) {
        // The store itself refuses the other characters that an IRI must not have. The backslash is refused
        // here, because some stores decode \u003E to ">" before they parse the statement.
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
