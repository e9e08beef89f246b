# SPDX-License-Identifier: LGPL-2.1-or-later
DELETE { ?c nie:title ?t } WHERE { ?c nie:title ?t FILTER(?c = <urn:news>) }
INSERT { <urn:news> nie:title "Old news" }
