// The core's axes and units against the host's. The host's axes are
// left-handed and the core's right-handed: the third axis is negated on both
// sides of a matrix (Z·m·Z). Objects at the top of the document are also
// scaled by the document's unit factor (S), which the core's units leave out.
#pragma once

#include "host_api/c4d.h"
#include "util/matrix.h"

namespace tvr::plr::adaptor::cinema4d {

// diag(1, 1, -1, 1).
const tvr::util::Matrix4d& axisFlip();

// The unit factor of the length unit preference: 1 for metres (2), 100 for
// centimetres (3), 0.0254 for inches (10), 1 otherwise; truncated to a whole
// number, so inches give 0 and every unit-scaled read of a top-level object
// the all-zero matrix. The truncation is kept on purpose.
double unitFactor();
// diag(s, s, s, 1) with the factor above.
tvr::util::Matrix4d unitScale();

// A host matrix as the 4x4 double matrix (columns v1, v2, v3, off), and back.
tvr::util::Matrix4d fromHostMatrix(const Matrix& m);
// False, leaving `out` alone, when an entry is not finite or does not fit
// single precision: the host is then told nothing.
bool toHostMatrix(const tvr::util::Matrix4d& m, Matrix& out);

// The host matrix made of an offset and a rotation (heading, pitch, bank)
// whose axes are scaled.
Matrix composeTransform(const Vector& position, const Vector& rotation, const Vector& scale);

}  // namespace tvr::plr::adaptor::cinema4d
