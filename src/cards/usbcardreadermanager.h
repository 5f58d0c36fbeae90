#ifndef USBCARDREADERMANAGER_H
#define USBCARDREADERMANAGER_H

#include "nvdialogs_export.h"

#include <objectinfo.h>
#include <templatedata.h>

#include <QObject>

class USBCardReaderManagerPrivate;

/**
 * The dialogs' one way to a USB smart-card reader: lists the readers and
 * runs the long card operations (read, format, write the UID, write the
 * templates) one at a time on the global thread pool. Each start operation
 * returns how many tick() signals it will emit, 0 when it cannot start.
 */
class NVDIALOGS_EXPORT USBCardReaderManager : public QObject
{
    Q_OBJECT
public:
    explicit USBCardReaderManager(QObject *parent = nullptr);
    ~USBCardReaderManager() override;

    QList<nivaro::ObjectInfo> readers() const;

    void setCardObject(const nivaro::ObjectInfo &card);
    void setSmartCardProfile(const nivaro::ObjectInfo &profile);

    int getCard(quint32 reader);
    int formatCard(quint32 reader);
    int writeCardUID(quint32 reader);
    int writeWorkerTemplates(nivaro::TYPE_ID worker, const QList<nivaro::_TEMPLATE_DATA> &templates,
                             const QByteArray &extra);
    int writeWorkerTemplates_v2(quint32 reader, const QList<nivaro::_TEMPLATE_DATA> &templates,
                                const QByteArray &extra);

    // True while an operation started here has not yet emitted finished().
    bool isBusy() const;

public Q_SLOTS:
    // Only emits cardFound(): the running operation goes on to its end.
    void stopReadCard();
    void dataAvailable();
    void writeCallback(int done, int total);
    void formatCallback(int done, int total);

Q_SIGNALS:
    void tick();
    void tickMessage(const QString &text);
    void message(const QString &text);
    void error(const QString &text);
    void cardRead(const nivaro::ObjectInfo &card);
    void cardReadDelay(nivaro::ObjectInfo card);
    void readerAdded(const nivaro::ObjectInfo &reader);
    void cardFound();
    void finished();

private:
    friend class USBCardReaderManagerPrivate;
    USBCardReaderManagerPrivate *d;
};

#endif
