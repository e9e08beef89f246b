# SPDX-License-Identifier: LGPL-2.1-or-later
INSERT {
    <urn:one> nie:contentCreated "2026-11-21T10:00:00+02:00"^^xsd:dateTime .
    <urn:two> nie:contentCreated "2026-11-21T09:00:00Z"^^xsd:dateTime .
}
