// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef TRACKER_P_H
#define TRACKER_P_H

// The library has a new name since version 3.8.
#if __has_include(<tinysparql.h>)
#include <tinysparql.h>
#else
#include <libtracker-sparql/tracker-sparql.h>
#endif

#include <memory>

struct GObjectDeleter
{
    void operator()(gpointer object) const { g_object_unref(object); }
};

/// Owns a reference to an object of GLib.
template <typename T> using GObjectPtr = std::unique_ptr<T, GObjectDeleter>;

#endif
