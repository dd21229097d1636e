// SPDX-License-Identifier: Apache-2.0

#pragma once

extern "C" char*** _NSGetEnviron();
