# SPDX-License-Identifier: LGPL-2.1-or-later
INSERT { <urn:two> nie:isLogicalPartOf <urn:one> } DELETE { <urn:one> a rdfs:Resource }
