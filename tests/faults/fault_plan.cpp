// SPDX-License-Identifier: Apache-2.0

#include "faults/fault_plan.hpp"

#include <cerrno>
#include <sstream>
#include <system_error>
#include <utility>

namespace kinovane::test {

namespace {

std::atomic<FaultPlan*> current = nullptr;

} // namespace

bool Fault::harmless() const { return kind == Kind::shortened || error == EINTR; }

std::string Fault::description() const {
    std::ostringstream text;
    text << callNames[static_cast<std::size_t>(call)] << ' ' << index + 1;
    if (times == forever)
        text << " and all later ones";
    else if (times != 1)
        text << " and " << times - 1 << " more";
    if (kind == Kind::shortened)
        text << ": one byte only";
    else if (kind == Kind::changed)
        text << ": another modification time";
    else
        text << (kind == Kind::reportedLate ? ": done, but: " : ": ")
             << std::generic_category().message(error);
    return text.str();
}

FaultPlan::FaultPlan(std::vector<Fault> faults) : faults_(std::move(faults)) { current = this; }

FaultPlan::~FaultPlan() { current = nullptr; }

CallCounts FaultPlan::counts() const {
    CallCounts counts{};
    for (std::size_t call = 0; call < counts.size(); ++call)
        counts[call] = counts_[call];
    return counts;
}

std::optional<Fault> FaultPlan::atCall(Call call) noexcept {
    FaultPlan* const plan = current;
    return plan != nullptr ? plan->noteCall(call) : std::nullopt;
}

std::optional<Fault> FaultPlan::noteCall(Call call) noexcept {
    const std::size_t index = counts_[static_cast<std::size_t>(call)]++;
    for (const Fault& fault : faults_)
        if (fault.call == call && index >= fault.index && index - fault.index < fault.times) {
            happened_ = true;
            return fault;
        }
    return std::nullopt;
}

} // namespace kinovane::test
