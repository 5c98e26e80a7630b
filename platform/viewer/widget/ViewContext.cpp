#include "platform/viewer/widget/ViewContext.h"

#include <QSurfaceFormat>

namespace pluvarine {

std::shared_ptr<ViewContext> ViewContext::acquire() {
    static std::weak_ptr<ViewContext> living;
    if (auto context = living.lock()) {
        return context;
    }
    QSurfaceFormat format;
    format.setVersion(3, 3);
    format.setProfile(QSurfaceFormat::CoreProfile);
    std::shared_ptr<ViewContext> context(new ViewContext);
    context->m_context.setFormat(format);
    if (!context->m_context.create()) {
        return nullptr;
    }
    context->m_surface.setFormat(context->m_context.format());
    context->m_surface.create();
    if (!context->m_surface.isValid()) {
        return nullptr;
    }
    living = context;
    return context;
}

bool ViewContext::makeCurrent() {
    return m_context.makeCurrent(&m_surface);
}

void ViewContext::doneCurrent() {
    m_context.doneCurrent();
}

} // namespace pluvarine
