#include "assembly/PlainRebuildInputs.h"

namespace pluvarine {

void PlainRebuildInputs::selectO42() {
    m_o42 = true;
    ++m_o42SelectionsByProgram;
}

} // namespace pluvarine
