# SPDX-License-Identifier: LGPL-2.1-or-later
INSERT {
    <urn:one> a mfo:FeedMessage ; nie:title "One" ; nie:contentSize 1 ; nie:links <http://example.org/1> .
    <urn:two> a mfo:FeedMessage ; nie:title "Two" ; nie:contentSize 2 ; nie:links <http://example.org/2> .
    <http://example.org/1> a nie:DataObject ; nie:created "2026-11-21T10:00:00Z" .
}
