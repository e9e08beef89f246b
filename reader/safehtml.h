// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_SAFEHTML_H
#define TIDEL_SAFEHTML_H

#include "tidelreaderglobal.h"

#include <QString>
#include <QStringList>
#include <QUrl>

namespace Tidel {

/**
 * What a person reads of an HTML text, as simple HTML that a rich-text view can show without danger.
 *
 * Only elements and attributes of a short list remain. There are no scripts, styles, frames, forms and
 * comments, and nothing that is hidden. Links are absolute and lead to http, https or mail addresses.
 * Pictures of one pixel, which count readers, are left out. Videos, sounds and frames become links.
 *
 * A text may come from a stranger. Time and memory grow with its length only. Elements lose their
 * tags if they are nested too deep, or if there are too many of them.
 *
 * \code
 * const SafeHtml text = SafeHtml::fromHtml(message.description(), QUrl(message.link()));
 * browser.setHtml(text.html);
 * \endcode
 */
struct TIDELREADER_EXPORT SafeHtml
{
    /// What becomes of pictures.
    enum Pictures {
        /// Links to picturesAddress() with the descriptions of the pictures, or their names.
        LinkedPictures,
        /// Pictures with absolute http, https and data addresses. To show them tells servers who reads.
        ShownPictures
    };

    QString html; ///< The content of a body.
    QStringList pictures; ///< The addresses of the pictures, each once, shown or not.

    /// Cleans \a html. Relative addresses are relative to \a base. Cleaning the result again with
    /// ShownPictures gives the same result.
    static SafeHtml fromHtml(const QString &html, const QUrl &base = QUrl(),
                             Pictures pictures = LinkedPictures);
    /// Where LinkedPictures lead, so that a host can ask for them. No other link leads there.
    static QUrl picturesAddress();
};

} // namespace Tidel

#endif
