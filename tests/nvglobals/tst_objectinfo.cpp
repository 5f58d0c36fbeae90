#include <objectinfo.h>

#include <QtTest>

using nivaro::ObjectInfo;

class TestObjectInfo : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void defaultIsInvalid() { QVERIFY(!ObjectInfo().isValid()); }
};

QTEST_GUILESS_MAIN(TestObjectInfo)
#include "tst_objectinfo.moc"
