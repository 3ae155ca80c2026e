#ifndef RUNTIME_PANEL_QTGUICOMPAT_H
#define RUNTIME_PANEL_QTGUICOMPAT_H

#include "runtime/base/qtcompat.h"

#include <QPoint>
#include <QWheelEvent>

/** A turn of a vertical mouse wheel at (0,0) without buttons or modifiers.
 *  @p delta is in eighths of a degree, negative towards the user. */
inline QWheelEvent verticalWheelTurn(int delta) {
#if PANEL_QT4
    return QWheelEvent(QPoint(0, 0), delta, Qt::NoButton, Qt::NoModifier, Qt::Vertical);
#else
    return QWheelEvent(QPointF(0, 0), QPointF(0, 0), QPoint(), QPoint(0, delta), Qt::NoButton,
                       Qt::NoModifier, Qt::NoScrollPhase, false);
#endif
}

#endif
