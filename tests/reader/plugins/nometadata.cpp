// SPDX-License-Identifier: LGPL-2.1-or-later
// A library that is no plug-in.
extern "C" int answer() { return 42; }
