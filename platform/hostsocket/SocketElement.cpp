#include "platform/hostsocket/SocketElement.h"

#include "platform/hostsocket/ProtocolValues.h"

namespace pluvarine {

void SocketElement::PrepareElement(bool flag) {
    call("PrepareElement", {{"flag", flag}});
}

std::int32_t SocketElement::SetElementMatrix(const PlacementMatrix& matrix) {
    return ProtocolValues::integer(
        call("SetElementMatrix", {{"matrix", ProtocolValues::matrix(matrix)}}), "SetElementMatrix");
}

std::int32_t SocketElement::CommitElement(bool flag) {
    return ProtocolValues::integer(call("CommitElement", {{"flag", flag}}), "CommitElement");
}

} // namespace pluvarine
