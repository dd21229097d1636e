// SPDX-License-Identifier: Apache-2.0

#include_next <fcntl.h>

// The values do not matter here.
#define F_FULLFSYNC 1001
#define O_NOFOLLOW_ANY 0x2000'0000
#define O_SEARCH 0x4000'0000
