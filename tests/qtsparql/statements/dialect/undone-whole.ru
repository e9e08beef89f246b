# SPDX-License-Identifier: LGPL-2.1-or-later
DELETE { ?s nie:title ?t } WHERE { ?s nie:title ?t }
INSERT { <urn:three> a mfo:FeedMessage }
INSERT { <urn:one> mfo:optional true }
