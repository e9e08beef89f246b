// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TIDEL_DOCUMENTTYPE_H
#define TIDEL_DOCUMENTTYPE_H

#include <map>
#include <string_view>

namespace Tidel {

/// The document type of a document, as far as the reading of feeds needs it.
struct DocumentType
{
    size_t size = 0; ///< Its size in the document.
    /// The values of the entities that it declares, with quotes, by name. What is kept elsewhere, such as in
    /// a file, is empty.
    std::map<std::string_view, std::string_view> entities;
};

/// Reads the document type at the beginning of \a text.
DocumentType readDocumentType(std::string_view text);

} // namespace Tidel

#endif
