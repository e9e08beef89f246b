# SPDX-License-Identifier: LGPL-2.1-or-later
INSERT {
    <urn:news> a mfo:FeedChannel ; nie:title "News" ; nie:links <http://example.org/news> .
    <urn:radio> a mfo:FeedChannel ; nie:title "Rádio שלום" ; nie:links <http://example.org/radio> .
    <urn:n1> a mfo:FeedMessage ; nie:isLogicalPartOf <urn:news> ; nie:title "First light" ;
        nie:contentCreated "2026-11-20T08:00:00Z"^^xsd:dateTime ; nie:links <http://example.org/news/1> .
    <urn:n2> a mfo:FeedMessage ; nie:isLogicalPartOf <urn:news> ; nie:title "Second thoughts" ;
        nie:contentCreated "2026-11-21T09:00:00+05:30"^^xsd:dateTime ; nie:links <http://example.org/news/2> ;
        nao:hasTag nao:predefined-tag-favorite .
    <urn:n3> a mfo:FeedMessage ; nie:isLogicalPartOf <urn:news> , <urn:radio> ; nie:title "Light again" ;
        nie:links <http://example.org/news/3> .
    <urn:r1> a mfo:FeedMessage ; nie:isLogicalPartOf <urn:radio> ; nie:title "" ;
        nie:contentCreated "2026-11-21T03:31:00Z"^^xsd:dateTime ; nie:links <http://example.org/radio/1> .
    <urn:e1> a mfo:Enclosure ; nie:isLogicalPartOf <urn:r1> ; mfo:remoteLink <http://example.org/1.mp3> ;
        mfo:optional true ; nie:contentSize 3000000000 ; nie:mimeType "audio/mpeg" .
    <urn:e2> a mfo:Enclosure ; nie:isLogicalPartOf <urn:r1> ; mfo:remoteLink <http://example.org/1.ogg> ;
        mfo:optional false ; nie:contentSize 0 .
}
