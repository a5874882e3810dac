#include "app/bridge/makeView.h"

#include <QQmlComponent>
#include <stdexcept>

namespace orvanta {

std::unique_ptr<QObject> makeView(QQmlEngine& engine, const QString& file,
                                  const QVariantMap& properties) {
    QQmlComponent component(&engine, QUrl("qrc:/qt/qml/Orvanta/" + file));
    // Only a ready one may be asked to create.
    std::unique_ptr<QObject> view(component.isReady() ? component.beginCreate(engine.rootContext())
                                                      : nullptr);
    if (view) {
        QVariantMap known;
        for (auto each = properties.begin(); each != properties.end(); ++each)
            if (view->metaObject()->indexOfProperty(each.key().toUtf8()) >= 0)
                known.insert(each.key(), each.value());
        component.setInitialProperties(view.get(), known);
        component.completeCreate();
    }
    if (!view || component.isError())
        throw std::runtime_error(component.errorString().toStdString());
    return view;
}

} // namespace orvanta
