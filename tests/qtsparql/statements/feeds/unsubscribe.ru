# SPDX-License-Identifier: LGPL-2.1-or-later
DELETE { ?m a rdfs:Resource } WHERE { ?m a mfo:FeedMessage ; nie:isLogicalPartOf <urn:news>
    FILTER NOT EXISTS { ?m nie:isLogicalPartOf ?other FILTER(?other != <urn:news>) } }
DELETE { ?m nie:isLogicalPartOf <urn:news> } WHERE { ?m nie:isLogicalPartOf <urn:news> }
DELETE { <urn:news> a rdfs:Resource }
