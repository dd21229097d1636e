// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "support/record_rows.hpp"

/// What holds for every record. Each function reports failures to the test that calls it.
namespace kinovane::test {

/// Every key is decoded into its own member, in any order; unknown keys are ignored; optional keys may be
/// missing or null, lists and maps may be empty.
void checkDecoding(const RecordRow& record);

/// A document with a missing key, a value of another type or several wrong keys is refused with the expected
/// message.
void checkRefusals(const RecordRow& record);

/// Records that differ in one member are unequal.
void checkEquality(const RecordRow& record);

/// Keys are written in declared order, without those that are absent. Nothing is checked for a record that is
/// only decoded.
void checkEncoding(const RecordRow& record);

} // namespace kinovane::test
