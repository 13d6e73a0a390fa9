#pragma once

#include <QQmlNetworkAccessManagerFactory>

namespace quillorn {

/// Lets nothing that the window shows reach a network: texts come from outside, and may name pictures.
class RefusedNetwork final : public QQmlNetworkAccessManagerFactory {
  public:
    QNetworkAccessManager* create(QObject* parent) override;
};

} // namespace quillorn
