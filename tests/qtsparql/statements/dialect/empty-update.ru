# SPDX-License-Identifier: LGPL-2.1-or-later

# This update has no operations.
