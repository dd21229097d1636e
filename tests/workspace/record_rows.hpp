// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <vector>

#include "support/record_rows.hpp"

namespace kinovane::test {

std::vector<RecordRow> projectRecords();
std::vector<RecordRow> planRecords();

namespace detail {
/// The record in which every key has its value, made in C++.
template <class Record>
Record fullRecord();
} // namespace detail

template <class Record>
RecordRow recordRow(std::string name, std::vector<KeyRow> keys) {
    return recordRow<Record>(std::move(name), std::move(keys), detail::fullRecord<Record>());
}

} // namespace kinovane::test
