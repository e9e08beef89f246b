# SPDX-License-Identifier: LGPL-2.1-or-later
DELETE { ?s nie:title ?t } WHERE { ?s nie:title ?t } INSERT { <urn:one> nie:title "New" }
INSERT { <urn:two> nie:title "Newer" } DELETE { <urn:two> a rdfs:Resource }
