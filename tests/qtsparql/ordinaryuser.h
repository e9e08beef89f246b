// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef ORDINARYUSER_H
#define ORDINARYUSER_H

#include <QtGlobal>

#include <sys/fsuid.h>

/// Takes from this thread what the user root may do to the files of others.
class OrdinaryUser
{
public:
    OrdinaryUser() : m_before(setfsuid(65534)) { }
    ~OrdinaryUser() { setfsuid(uid_t(m_before)); }

private:
    Q_DISABLE_COPY(OrdinaryUser)

    const int m_before;
};

#endif
