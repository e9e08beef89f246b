# SPDX-License-Identifier: LGPL-2.1-or-later
INSERT { <urn:one> nie:comment "?_a <> # \"?_b\"" }
