#include "platform/tectaro/TectaroPlacement.h"

namespace pluvarine {

QVector3D TectaroPlacement::referencePoint(const QVector3D& boundsMin, const QVector3D& boundsMax) {
    return (boundsMin + boundsMax) / 2;
}

QMatrix4x4 TectaroPlacement::toMatrix4x4(const PlacementMatrix& matrix) {
    QMatrix4x4 result;
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            result(row, column) = matrix.at(row, column);
        }
    }
    return result;
}

QMatrix4x4 TectaroPlacement::worldTransform(const PlacementMatrix& matrix,
                                            const QVector3D& boundsMin,
                                            const QVector3D& boundsMax) {
    QMatrix4x4 world = toMatrix4x4(matrix);
    world.rotate(180.0f, 0.0f, 0.0f, 1.0f);
    world.translate(-referencePoint(boundsMin, boundsMax));
    return world;
}

} // namespace pluvarine
