# SPDX-License-Identifier: LGPL-2.1-or-later
DELETE { <> nie:title ?t . <urn:one> nie:title ?t } WHERE { <urn:one> nie:title ?t }
INSERT { <> nie:title "Nothing" . <urn:one> nie:title "New" ; nie:isLogicalPartOf <> }
insert data { <> a nie:DataObject ; nie:created "2026-11-21T10:00:00Z" }
DELETE { <> nie:mimeType ?m } WHERE { <> nie:mimeType ?m } INSERT { <> nie:mimeType "a/b" }
DELETE { <urn:two> a rdfs:Resource . <> a rdfs:Resource }
