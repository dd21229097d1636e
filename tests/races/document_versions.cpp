// SPDX-License-Identifier: Apache-2.0

#include "races/document_versions.hpp"

#include <boost/json.hpp>

#include "support/sample_film.hpp"

namespace kinovane::test {

namespace {

namespace bj = boost::json;

void lengthen(bj::value& value, const std::string& addition) {
    if (bj::string* text = value.if_string()) {
        text->append(addition);
    } else if (bj::array* list = value.if_array()) {
        for (bj::value& element : *list)
            lengthen(element, addition);
    } else if (bj::object* record = value.if_object()) {
        for (auto& [key, element] : *record)
            if (key != "contractVersion")
                lengthen(element, addition);
    }
}

template <class Records, class Record>
std::optional<std::size_t> positionIn(const Records& records, const Record& record, auto member) {
    for (std::size_t version = 0; version < records.size(); ++version)
        if (records[version].*member == record)
            return version;
    return std::nullopt;
}

} // namespace

DocumentVersions::DocumentVersions(std::size_t addedLength) {
    for (std::size_t version = 0; version < texts_.size(); ++version) {
        const std::string addition(version * addedLength, 'x');
        for (std::size_t document = 0; document < names.size(); ++document) {
            bj::value value = bj::parse(contentOf(sampleFilm() / names[document]));
            lengthen(value, addition);
            texts_[version][document] = bj::serialize(value);
        }
        records_[version] = {decodeJSON<FilmProject>(texts_[version][0]),
                             decodeJSON<FilmProductionPlan>(texts_[version][1]),
                             decodeJSON<FilmTreatment>(texts_[version][2])};
    }
}

std::optional<std::size_t> DocumentVersions::versionOf(const FilmProject& project) const {
    return positionIn(records_, project, &Records::project);
}

std::optional<std::size_t> DocumentVersions::versionOf(const FilmProductionPlan& plan) const {
    return positionIn(records_, plan, &Records::plan);
}

std::optional<std::size_t> DocumentVersions::versionOf(const FilmTreatment& treatment) const {
    return positionIn(records_, treatment, &Records::treatment);
}

} // namespace kinovane::test
