#include "threads/IRunnable.h"

#include <QtTest>

namespace
{

class Named : public ko::IRunnable
{
public:
    IInterface* getInterface(const std::string& name) override
    {
        if (name == "test::Named")
            return this;
        return IInterface::getInterface(name);
    }
    void run(int, QTime&) override {}
};

} // namespace

class tst_IRunnable : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void interfaceName_data();
    void interfaceName();
    void abortFlag();
};

void tst_IRunnable::interfaceName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("found");
    QTest::newRow("exact") << "ko::IInterface" << true;
    QTest::newRow("subclass name") << "test::Named" << true;
    QTest::newRow("trailing blank") << "ko::IInterface " << false;
    QTest::newRow("leading blank") << " ko::IInterface" << false;
    QTest::newRow("letter case") << "ko::iinterface" << false;
    QTest::newRow("without namespace") << "IInterface" << false;
    QTest::newRow("empty") << "" << false;
}

void tst_IRunnable::interfaceName()
{
    QFETCH(QString, name);
    QFETCH(bool, found);
    Named object;
    const ko::IInterface& constObject = object;
    const std::string key = name.toStdString();
    ko::IInterface* self = static_cast<ko::IInterface*>(&object);
    QCOMPARE(object.getInterface(key), found ? self : nullptr);
    // The const form goes through the override.
    QCOMPARE(constObject.getInterface(key), found ? self : nullptr);
    QCOMPARE(ko::IInterface::ID(), std::string("ko::IInterface"));
    QCOMPARE(&ko::IInterface::ID(), &ko::IInterface::ID());
}

void tst_IRunnable::abortFlag()
{
    Named job;
    QVERIFY(!job.mAbortRequested);
    job.mAbortRequested = true;
    Named copy(job);
    QVERIFY(copy.mAbortRequested);
}

QTEST_GUILESS_MAIN(tst_IRunnable)
#include "tst_IRunnable.moc"
