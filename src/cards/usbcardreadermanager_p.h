#ifndef USBCARDREADERMANAGER_P_H
#define USBCARDREADERMANAGER_P_H

#include "smartcardprofile.h"
#include "usbcardreadermanager.h"

#include <nvcardmanager.h>

#include <QFutureWatcher>
#include <QHash>

/**
 * The reader side of USBCardReaderManager. The worker functions run on a
 * pool thread; everything they read is set on the GUI thread before the
 * operation starts, and they report back only through the public object's
 * signals (queued to the GUI thread) and the future's result.
 */
class USBCardReaderManagerPrivate : public QObject
{
    Q_OBJECT
public:
    explicit USBCardReaderManagerPrivate(USBCardReaderManager *q);
    ~USBCardReaderManagerPrivate() override;

    USBCardReaderManager *const q;
    NVCardManager *cardManager = nullptr;
    QHash<quint32, nivaro::ObjectInfo> readers;
    // The library's own descriptions, by the same index as readers.
    QHash<quint32, nvcm::ReaderInfo> readerInfos;
    quint32 currentReader = 0;
    nivaro::ObjectInfo cardObject;
    nivaro::ObjectInfo smartCardProfile;
    QFutureWatcher<nivaro::ObjectInfo> watcher;
    bool busy = false;

    // The data to write, kept for the worker thread.
    QByteArray writeBuffer;
    QList<nivaro::_TEMPLATE_DATA> writeTemplates;
    QByteArray writeExtra;

    // What getCardProfile uses, resolved on the GUI thread when an
    // operation starts (updateCardProfileInherit): the store is not to be
    // read from a pool thread.
    nivaro::ObjectInfo resolvedProfile;
    QStringList candidateProfiles;
    // cardObject as it was when the operation started: the card widget may
    // set another while the worker still reads this one.
    nivaro::ObjectInfo operationCard;

    nivaro::ObjectInfo doReadCard();
    nivaro::ObjectInfo doFormatCard();
    nivaro::ObjectInfo doWriteData(const QByteArray &data);
    nivaro::ObjectInfo doWriteData_v2(const QList<nivaro::_TEMPLATE_DATA> &templates, const QByteArray &extra);
    nivaro::ObjectInfo doWriteCardUID();

    bool waitCard(const nvcm::ReaderInfo &reader);
    static QByteArray prepareData(quint8 type, const QList<QByteArray> &records);
    static QByteArray prepareData_v2(const QList<nivaro::_TEMPLATE_DATA> &templates, quint64 uid,
                                     const QByteArray &extra);
    SmartCardProfile getCardProfile(const nivaro::ObjectInfo &card) const;
    void mergeCardInfo(nivaro::ObjectInfo &card) const;
    void updateCardProfileInherit();

    // The common start of every operation; returns ticks or 0.
    using Worker = nivaro::ObjectInfo (USBCardReaderManagerPrivate::*)();
    int start(quint32 reader, Worker worker, void (USBCardReaderManagerPrivate::*finished)(), int ticks);

Q_SIGNALS:
    void getCardKeys(const nvsmartcard::CardType &type, quint32 keyNumber);

private Q_SLOTS:
    void doReadCardFinished();
    void doFormatCardFinished();
    void doWriteDataFinished();

private:
    // The public object hands these to start().
    friend class USBCardReaderManager;

    nivaro::ObjectInfo runWriteBuffer() { return doWriteData(writeBuffer); }
    nivaro::ObjectInfo runWriteTemplates() { return doWriteData_v2(writeTemplates, writeExtra); }

    // Steps shared by the flows; each returns false after it has reported
    // the failure and closed the device.
    bool readCardInfo(const nvcm::ReaderInfo &reader, nvcm::SCardInfo &info);
    void updateReader(const nvcm::ReaderInfo &reader, nivaro::ObjectInfo *card);
    bool authorizeCard(const nvcm::ReaderInfo &reader, const SmartCardProfile &profile,
                       nvsmartcard::CardType type, std::unique_ptr<nvsc::SmartCardSettings> &used);
    bool formatStep(const nvcm::ReaderInfo &reader, const nvsc::SmartCardSettings &settings, bool tickOnSuccess);
    bool updateKeysStep(const nvcm::ReaderInfo &reader, nvsc::SmartCardSettings &settings);
    void removeCard(const nvcm::ReaderInfo &reader);
    void failAndClose(const nvcm::ReaderInfo &reader, const QString &text);
    bool finishOperation();
    void finishWithCard(const QString &doneText);
    bool cardForWrite(const char *tag, nvcm::SCardInfo &info, nivaro::ObjectInfo &card);
};

#endif
