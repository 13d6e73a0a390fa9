#include "Desktop/RefusedNetwork.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>

namespace quillorn {

namespace {

class RefusedReply final : public QNetworkReply {
  public:
    RefusedReply(QNetworkAccessManager::Operation operation, const QNetworkRequest& request, QObject* parent)
        : QNetworkReply(parent) {
        setOperation(operation);
        setRequest(request);
        setUrl(request.url());
        setError(ContentAccessDenied, "The window asks no network");
        setFinished(true);
        QMetaObject::invokeMethod(
            this,
            [this] {
                Q_EMIT errorOccurred(ContentAccessDenied);
                Q_EMIT finished();
            },
            Qt::QueuedConnection);
    }
    void abort() override {}

  protected:
    qint64 readData(char*, qint64) override { return -1; }
};

class RefusingManager final : public QNetworkAccessManager {
  public:
    using QNetworkAccessManager::QNetworkAccessManager;

  protected:
    QNetworkReply* createRequest(Operation operation, const QNetworkRequest& request, QIODevice*) override {
        return new RefusedReply(operation, request, this);
    }
};

} // namespace

QNetworkAccessManager* RefusedNetwork::create(QObject* parent) {
    return new RefusingManager(parent);
}

} // namespace quillorn
