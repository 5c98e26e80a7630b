#include "host/HostJournal.h"

namespace pluvarine {

void HostJournal::record(nlohmann::ordered_json entry) {
    nlohmann::ordered_json line{{"seq", ++m_sequence}};
    line.update(entry);
    m_out << line.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << '\n';
    m_out.flush();
}

nlohmann::ordered_json HostJournal::value(const HostPicture& picture) {
    return {{"width", picture.image.width()}, {"height", picture.image.height()}};
}

nlohmann::ordered_json HostJournal::value(const PlacementMatrix& matrix) {
    // In the order the host receives it: the first index varying fastest.
    return matrix.values;
}

} // namespace pluvarine
