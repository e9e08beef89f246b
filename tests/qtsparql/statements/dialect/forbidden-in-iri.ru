# SPDX-License-Identifier: LGPL-2.1-or-later
INSERT { <urn:three> a mfo:FeedMessage ; nie:links <http://example.org/a"b> }
