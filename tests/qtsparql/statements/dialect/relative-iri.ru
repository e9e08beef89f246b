# SPDX-License-Identifier: LGPL-2.1-or-later
INSERT { <urn:one> nie:isLogicalPartOf </tmp/a.mp3> }
