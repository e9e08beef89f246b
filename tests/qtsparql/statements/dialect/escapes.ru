# SPDX-License-Identifier: LGPL-2.1-or-later
INSERT { <urn:one> nie:comment "\t\n\r\b\f\"\'\\ ä日" }
