// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "io/QtSettingsAdaptor.h"

#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>

#include <string>

Q_DECLARE_METATYPE(std::string)

namespace
{

std::string bytes(const char *text, size_t length)
{
    return std::string(text, length);
}

} // namespace

class tst_QtSettingsAdaptor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void valuesReadBackThroughQSettings_data();
    void valuesReadBackThroughQSettings();
    void nestedGroups();
    void unwritableFile();

private:
    QString iniPath() const { return mDir->filePath(QStringLiteral("settings.ini")); }
    std::unique_ptr<QTemporaryDir> mDir;
};

void tst_QtSettingsAdaptor::init()
{
    mDir.reset(new QTemporaryDir);
    QVERIFY(mDir->isValid());
}

void tst_QtSettingsAdaptor::valuesReadBackThroughQSettings_data()
{
    QTest::addColumn<std::string>("key");
    QTest::addColumn<std::string>("value");
    QTest::newRow("plain") << std::string("name") << std::string("camera one");
    QTest::newRow("empty value") << std::string("empty") << std::string();
    QTest::newRow("embedded zero") << std::string("zero") << bytes("left\0right", 10);
    QTest::newRow("Latin-1 byte") << std::string("accent") << std::string("caf\xe9");
    QTest::newRow("punctuation") << std::string("odd") << std::string("a=b; c, \"d\"\n");
}

void tst_QtSettingsAdaptor::valuesReadBackThroughQSettings()
{
    QFETCH(std::string, key);
    QFETCH(std::string, value);
    {
        QSettings settings(iniPath(), QSettings::IniFormat);
        ko::QtSettingsAdaptor adaptor(settings);
        QCOMPARE(adaptor.value(key, value), value); // a missing key gives the default, whole
        QVERIFY(!adaptor.contains(key));
        adaptor.setValue(key, value);
        QCOMPARE(settings.value(QString::fromStdString(key)).userType(), int(QMetaType::QString));
        QVERIFY(adaptor.contains(key));
        QCOMPARE(adaptor.value(key, "default"), value);
        adaptor.sync();
        QCOMPARE(adaptor.status(), 0);
        QVERIFY(adaptor.isWritable());
    }
    // A fresh QSettings on the same file sees the text.
    QSettings reread(iniPath(), QSettings::IniFormat);
    const QString expected = QString::fromLatin1(value.data(), int(value.size()));
    QCOMPARE(reread.value(QString::fromLatin1(key.data(), int(key.size()))).toString(), expected);
    ko::QtSettingsAdaptor adaptor(reread);
    QCOMPARE(adaptor.value(key, "default"), value);
}

// Groups, keys inside them and removal reach the QSettings object.
void tst_QtSettingsAdaptor::nestedGroups()
{
    QSettings settings(iniPath(), QSettings::IniFormat);
    ko::QtSettingsAdaptor adaptor(settings);
    adaptor.beginGroup("a");
    adaptor.beginGroup("b");
    QCOMPARE(adaptor.group(), std::string("a/b"));
    adaptor.setValue("key", "inner");
    adaptor.endGroup();
    QCOMPARE(adaptor.group(), std::string("a"));
    QCOMPARE(settings.value(QStringLiteral("b/key")).toString(), QStringLiteral("inner"));
    adaptor.remove("b");
    QVERIFY(!settings.contains(QStringLiteral("b/key")));
    adaptor.endGroup();
    QCOMPARE(settings.group(), QString());
}

void tst_QtSettingsAdaptor::unwritableFile()
{
    // A settings file below a plain file can never be written.
    QFile blocker(mDir->filePath(QStringLiteral("plain")));
    QVERIFY(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    QSettings settings(blocker.fileName() + QStringLiteral("/settings.ini"), QSettings::IniFormat);
    ko::QtSettingsAdaptor adaptor(settings);
    adaptor.setValue("key", "value");
    adaptor.sync();
    QVERIFY(!adaptor.isWritable());
    QCOMPARE(adaptor.status(), 1);
}

QTEST_GUILESS_MAIN(tst_QtSettingsAdaptor)
#include "tst_QtSettingsAdaptor.moc"
