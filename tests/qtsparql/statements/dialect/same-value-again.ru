# SPDX-License-Identifier: LGPL-2.1-or-later
INSERT { <http://example.org/1> nie:created "2026-11-21T10:00:00Z" }
