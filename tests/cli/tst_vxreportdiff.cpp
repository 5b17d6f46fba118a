// The comparison of two JSON reports: pairs that differ in one fact each,
// identical reports, and reports that cannot be compared.
#include "vxreportdiff.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QtTest>

#include <functional>

using VxReportDiff::Kind;

class TestVxReportDiff : public QObject
{
    Q_OBJECT
private slots:
    void identicalReportsDoNotDiffer();
    void oneDifference_data();
    void oneDifference();
    void orderOfListsDoesNotCount();
    void namesAndTimesAreNotCompared();
    void linesOnlyWhenFactsAgree();
    void maskLeavesOutItems();
    void deepNesting();
    void textForm();
    void jsonForm();
    void badReports_data();
    void badReports();
    void unreadableFiles();
    void goodFileIsRead();
};

namespace {
using Mutation = std::function<void(QJsonObject &)>;

QJsonObject device(const QString &strPort, int nSubclass)
{
    return QJsonObject {{"port", strPort}, {"vendorId", "1ab2"}, {"productId", "0001"},
        {"product", "Camera " + strPort}, {"speed", 5000}, {"configuration", 1},
        {"interfaces",
            QJsonArray {QJsonObject {{"number", 0}, {"class", 239}, {"subclass", nSubclass}, {"protocol", 0}},
                QJsonObject {{"number", 1}, {"class", 239}, {"subclass", 5}, {"protocol", 1}}}}};
}

QJsonObject usbFacts()
{
    const QJsonObject hub {{"port", "1-1"}, {"product", "Hub"}, {"speed", 5000},
        {"devices", QJsonArray {device("1-1.1", 5), device("1-1.2", 5)}}};
    const QJsonObject controller {{"pciAddress", "0000:00:14.0"}, {"name", "xHCI Host Controller"},
        {"driver", "xhci_hcd"}, {"hubs", QJsonArray {hub}}};
    return QJsonObject {{"hasTree", true}, {"tree", QJsonObject {{"controllers", QJsonArray {controller}}}}};
}

QJsonObject item(int nItem, const QString &strName, bool bNormal, const QJsonObject &facts, const QStringList &lines)
{
    return QJsonObject {{"id", nItem}, {"name", strName}, {"group", "Group"}, {"available", true}, {"normal", bNormal},
        {"severity", bNormal ? 0 : 1}, {"facts", facts}, {"lines", QJsonArray::fromStringList(lines)}};
}

QJsonObject baseReport()
{
    QJsonArray items;
    items << item(1, "SDK Diagnosis", true,
        QJsonObject {{"foundFiles", QJsonObject {{"libA.so", QJsonArray {"/usr/lib", "/opt/lib"}}}}},
        {" No other SDK files were found"});
    items << item(8, "USB3 Vision Driver", true, QJsonObject(), {"USB driver is installed."});
    items << item(512, "USB Controller Information", true, usbFacts(), {"Controller", "  Hub", "    Camera"});
    items << QJsonObject {{"id", 1024}, {"name", "Firewall"}, {"group", "Group"}, {"available", false},
        {"normal", QJsonValue::Null}, {"severity", QJsonValue::Null}, {"lines", QJsonArray {"n/a"}}};
    items << item(2048, "Systm Info", true, QJsonObject {{"cpu", "Cpu A"}, {"cpuCount", "4"}}, {"CPU : Cpu A"});
    return QJsonObject {{"tool", "vetrix-check"}, {"version", "4.1.0"}, {"items", items}};
}

// Applies f to the item with the id, in place.
void editItem(QJsonObject &report, int nItem, const std::function<void(QJsonObject &)> &f)
{
    QJsonArray items = report.value("items").toArray();
    for (int i = 0; i < items.size(); ++i) {
        QJsonObject object = items.at(i).toObject();
        if (object.value("id").toInt() == nItem) {
            f(object);
            items[i] = object;
        }
    }
    report["items"] = items;
}

void removeItem(QJsonObject &report, int nItem)
{
    QJsonArray items = report.value("items").toArray();
    for (int i = items.size() - 1; i >= 0; --i) {
        if (items.at(i).toObject().value("id").toInt() == nItem)
            items.removeAt(i);
    }
    report["items"] = items;
}

// Edits the first hub's devices of item 512.
void editDevices(QJsonObject &report, const std::function<void(QJsonArray &)> &f)
{
    editItem(report, 512, [&](QJsonObject &object) {
        QJsonObject facts = object.value("facts").toObject();
        QJsonObject tree = facts.value("tree").toObject();
        QJsonArray controllers = tree.value("controllers").toArray();
        QJsonObject controller = controllers.at(0).toObject();
        QJsonArray hubs = controller.value("hubs").toArray();
        QJsonObject hub = hubs.at(0).toObject();
        QJsonArray devices = hub.value("devices").toArray();
        f(devices);
        hub["devices"] = devices;
        hubs[0] = hub;
        controller["hubs"] = hubs;
        controllers[0] = controller;
        tree["controllers"] = controllers;
        facts["tree"] = tree;
        object["facts"] = facts;
    });
}

void editFacts(QJsonObject &report, int nItem, const std::function<void(QJsonObject &)> &f)
{
    editItem(report, nItem, [&](QJsonObject &object) {
        QJsonObject facts = object.value("facts").toObject();
        f(facts);
        object["facts"] = facts;
    });
}

QByteArray bytesOf(const QJsonObject &report)
{
    return QJsonDocument(report).toJson();
}
} // namespace

Q_DECLARE_METATYPE(Mutation)
Q_DECLARE_METATYPE(VxReportDiff::Kind)

void TestVxReportDiff::identicalReportsDoNotDiffer()
{
    const VxReportDiff::Result result = VxReportDiff::compare(baseReport(), baseReport());
    QVERIFY(result.isEmpty());
    QVERIFY(!result.gradesDiffer());
    QVERIFY(VxReportDiff::text(result, "a.json", "b.json").endsWith("No differences.\n"));
}

void TestVxReportDiff::oneDifference_data()
{
    QTest::addColumn<Mutation>("mutate"); // turns the base report into the second one
    QTest::addColumn<int>("item");
    QTest::addColumn<Kind>("kind");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("before"); // compact JSON, empty for none
    QTest::addColumn<QString>("after");
    QTest::addColumn<bool>("grades");

    QTest::addRow("fact changed") << Mutation(
        [](QJsonObject &r) { editFacts(r, 2048, [](QJsonObject &f) { f["cpu"] = "Cpu B"; }); })
                                  << 2048 << Kind::FactChanged << "facts.cpu"
                                  << "\"Cpu A\""
                                  << "\"Cpu B\"" << false;
    QTest::addRow("fact added") << Mutation(
        [](QJsonObject &r) { editFacts(r, 2048, [](QJsonObject &f) { f["resolution"] = "1920*1080"; }); })
                                << 2048 << Kind::FactAdded << "facts.resolution"
                                << ""
                                << "\"1920*1080\"" << false;
    QTest::addRow("fact removed") << Mutation(
        [](QJsonObject &r) { editFacts(r, 2048, [](QJsonObject &f) { f.remove("cpuCount"); }); })
                                  << 2048 << Kind::FactRemoved << "facts.cpuCount"
                                  << "\"4\""
                                  << "" << false;
    QTest::addRow("normal to exceptional")
        << Mutation([](QJsonObject &r) { editItem(r, 8, [](QJsonObject &o) { o["normal"] = false; }); }) << 8
        << Kind::GradeChanged << "normal"
        << "true"
        << "false" << true;
    QTest::addRow("severity") << Mutation(
        [](QJsonObject &r) { editItem(r, 8, [](QJsonObject &o) { o["severity"] = 2; }); })
                              << 8 << Kind::GradeChanged << "severity"
                              << "0"
                              << "2" << true;
    QTest::addRow("available") << Mutation(
        [](QJsonObject &r) { editItem(r, 1024, [](QJsonObject &o) { o["available"] = true; }); })
                               << 1024 << Kind::GradeChanged << "available"
                               << "false"
                               << "true" << true;
    QTest::addRow("item added") << Mutation([](QJsonObject &r) {
        QJsonArray items = r.value("items").toArray();
        items << item(4, "GigE Vision Driver", false, QJsonObject(), {" GigE driver is not installed."});
        r["items"] = items;
    }) << 4 << Kind::ItemAdded << ""
                                << ""
                                << "{\"available\":true,\"normal\":false,\"severity\":1}" << true;
    QTest::addRow("item removed") << Mutation([](QJsonObject &r) { removeItem(r, 1); }) << 1 << Kind::ItemRemoved << ""
                                  << "{\"available\":true,\"normal\":true,\"severity\":0}"
                                  << "" << true;
    QTest::addRow("nested fact deep in the tree")
        << Mutation([](QJsonObject &r) { editDevices(r, [](QJsonArray &d) { d[1] = device("1-1.2", 6); }); }) << 512
        << Kind::FactChanged
        << "facts.tree.controllers[pciAddress=0000:00:14.0].hubs[port=1-1].devices[port=1-1.2].interfaces[number=0]"
           ".subclass"
        << "5"
        << "6" << false;
    QTest::addRow("device added to the tree") << Mutation([](QJsonObject &r) {
        editDevices(r, [](QJsonArray &d) { d.append(QJsonObject {{"port", "1-1.3"}, {"speed", 480}}); });
    }) << 512 << Kind::FactAdded << "facts.tree.controllers[pciAddress=0000:00:14.0].hubs[port=1-1].devices[port=1-1.3]"
                                              << ""
                                              << "{\"port\":\"1-1.3\",\"speed\":480}" << false;
    QTest::addRow("device removed from the tree")
        << Mutation([](QJsonObject &r) { editDevices(r, [](QJsonArray &d) { d.removeAt(0); }); }) << 512
        << Kind::FactRemoved << "facts.tree.controllers[pciAddress=0000:00:14.0].hubs[port=1-1].devices[port=1-1.1]"
        << QString::fromUtf8(QJsonDocument(device("1-1.1", 5)).toJson(QJsonDocument::Compact)) << "" << false;
    QTest::addRow("folder added to a list") << Mutation([](QJsonObject &r) {
        editFacts(r, 1, [](QJsonObject &f) {
            f["foundFiles"] = QJsonObject {{"libA.so", QJsonArray {"/usr/lib", "/opt/lib", "/srv/lib"}}};
        });
    }) << 1 << Kind::FactAdded << "facts.foundFiles[\"libA.so\"]"
                                            << ""
                                            << "\"/srv/lib\"" << false;
    QTest::addRow("type of a fact changed")
        << Mutation([](QJsonObject &r) { editFacts(r, 512, [](QJsonObject &f) { f["hasTree"] = QJsonValue::Null; }); })
        << 512 << Kind::FactChanged << "facts.hasTree"
        << "true"
        << "null" << false;
    QTest::addRow("line only") << Mutation([](QJsonObject &r) {
        editItem(r, 512, [](QJsonObject &o) {
            o["lines"] = QJsonArray {"Controller", "  Hub", "    Camera", "    Mouse"};
        });
    }) << 512 << Kind::LineAdded
                               << "lines"
                               << ""
                               << "\"    Mouse\"" << false;
}

void TestVxReportDiff::oneDifference()
{
    QFETCH(Mutation, mutate);
    QFETCH(int, item);
    QFETCH(Kind, kind);
    QFETCH(QString, path);
    QFETCH(QString, before);
    QFETCH(QString, after);
    QFETCH(bool, grades);

    QJsonObject second = baseReport();
    mutate(second);
    // Both reports must be valid ones.
    QJsonObject parsed;
    QString strError;
    QVERIFY2(VxReportDiff::parseReport(bytesOf(second), "b.json", &parsed, &strError), qPrintable(strError));

    const VxReportDiff::Result result = VxReportDiff::compare(baseReport(), parsed);
    QCOMPARE(result.items.size(), 1);
    const VxReportDiff::ItemDiff &diff = result.items.first();
    QCOMPARE(diff.nItem, item);
    QCOMPARE(diff.changes.size(), 1);
    const VxReportDiff::Change &change = diff.changes.first();
    QCOMPARE(VxReportDiff::kindKey(change.kind), VxReportDiff::kindKey(kind));
    QCOMPARE(change.strPath, path);
    QCOMPARE(change.before.isUndefined() ? QString() : VxReportDiff::valueText(QString("x"), change.before, 0), before);
    QCOMPARE(change.after.isUndefined() ? QString() : VxReportDiff::valueText(QString("x"), change.after, 0), after);
    QCOMPARE(diff.bGradeChanged, grades);
    QCOMPARE(result.gradesDiffer(), grades);

    // The other way round: the opposite change.
    const VxReportDiff::Result back = VxReportDiff::compare(parsed, baseReport());
    QCOMPARE(back.items.size(), 1);
    QCOMPARE(back.items.first().changes.size(), 1);
    QCOMPARE(back.items.first().changes.first().before, change.after);
    QCOMPARE(back.gradesDiffer(), grades);
}

void TestVxReportDiff::orderOfListsDoesNotCount()
{
    QJsonObject second = baseReport();
    editFacts(second, 1, [](QJsonObject &f) {
        f["foundFiles"] = QJsonObject {{"libA.so", QJsonArray {"/opt/lib", "/usr/lib"}}};
    });
    editDevices(second, [](QJsonArray &d) {
        const QJsonValue first = d.at(0);
        d.removeAt(0);
        d.append(first);
    });
    QVERIFY(VxReportDiff::compare(baseReport(), second).isEmpty());

    // A repeated folder counts once more.
    editFacts(second, 1, [](QJsonObject &f) {
        f["foundFiles"] = QJsonObject {{"libA.so", QJsonArray {"/opt/lib", "/usr/lib", "/usr/lib"}}};
    });
    const VxReportDiff::Result result = VxReportDiff::compare(baseReport(), second);
    QCOMPARE(result.items.size(), 1);
    QCOMPARE(result.items.first().changes.size(), 1);
    QCOMPARE(result.items.first().changes.first().after.toString(), QStringLiteral("/usr/lib"));
}

void TestVxReportDiff::namesAndTimesAreNotCompared()
{
    QJsonObject second = baseReport();
    editItem(second, 2048, [](QJsonObject &o) {
        o["name"] = QString::fromUtf8("系统信息");
        o["group"] = QString::fromUtf8("系统诊断");
        o["timeMs"] = 12.5;
    });
    second["totalTimeMs"] = 40.0;
    QVERIFY(VxReportDiff::compare(baseReport(), second).isEmpty());
}

void TestVxReportDiff::linesOnlyWhenFactsAgree()
{
    QJsonObject second = baseReport();
    editItem(second, 2048, [](QJsonObject &o) {
        o["lines"] = QJsonArray {"CPU : Cpu B"};
        QJsonObject facts = o.value("facts").toObject();
        facts["cpu"] = "Cpu B";
        o["facts"] = facts;
    });
    const VxReportDiff::Result result = VxReportDiff::compare(baseReport(), second);
    QCOMPARE(result.items.size(), 1);
    QCOMPARE(result.items.first().changes.size(), 1);
    QCOMPARE(result.items.first().changes.first().strPath, QStringLiteral("facts.cpu"));
}

void TestVxReportDiff::maskLeavesOutItems()
{
    QJsonObject second = baseReport();
    removeItem(second, 1);
    editFacts(second, 2048, [](QJsonObject &f) { f["cpu"] = "Cpu B"; });
    QCOMPARE(VxReportDiff::compare(baseReport(), second).items.size(), 2);
    const VxReportDiff::Result result = VxReportDiff::compare(baseReport(), second, 2048u | 8u);
    QCOMPARE(result.items.size(), 1);
    QCOMPARE(result.items.first().nItem, 2048);
    QVERIFY(!result.gradesDiffer());
}

// A fact nested as deeply as a JSON document may be (Qt reads up to 1024
// levels): one change, named by its whole path, and no crash.
void TestVxReportDiff::deepNesting()
{
    auto nested = [](int nLeaf, int nDepth = 1000) {
        QByteArray bytes = QByteArray::number(nLeaf);
        for (int i = 0; i < nDepth; ++i)
            bytes = (i % 2 ? "{\"k\":" : "[") + bytes + (i % 2 ? "}" : "]");
        return bytes;
    };
    auto reportWith = [](const QByteArray &fact) {
        return R"({"tool":"vetrix-check","version":"4.1.0","items":[{"id":2048,"available":true,"normal":true,)"
               R"("severity":0,"facts":{"deep":)"
            + fact + "}}]}";
    };
    QJsonObject before;
    QJsonObject after;
    QString strError;
    QVERIFY2(VxReportDiff::parseReport(reportWith(nested(1)), "a", &before, &strError), qPrintable(strError));
    QVERIFY2(VxReportDiff::parseReport(reportWith(nested(2)), "b", &after, &strError), qPrintable(strError));
    const VxReportDiff::Result result = VxReportDiff::compare(before, after);
    QCOMPARE(result.items.size(), 1);
    QCOMPARE(result.items.first().changes.size(), 2); // a list of plain values: 1 removed, 2 added
    const QString strPath = result.items.first().changes.first().strPath;
    QVERIFY(strPath.startsWith("facts.deep.k[0].k[0].k[0]"));
    QCOMPARE(strPath.count(".k[0]"), 499);

    // Deeper than a JSON document may be: refused, not compared.
    QVERIFY(!VxReportDiff::parseReport(reportWith(nested(1, 1100)), "c", &before, &strError));
    QVERIFY(strError.startsWith("c is not a JSON report"));
}

void TestVxReportDiff::textForm()
{
    QJsonObject second = baseReport();
    editItem(second, 8, [](QJsonObject &o) {
        o["normal"] = false;
        o["severity"] = 1;
    });
    editFacts(second, 2048, [](QJsonObject &f) { f["cpu"] = "Cpu B"; });
    removeItem(second, 1024);
    const QString strText = VxReportDiff::text(VxReportDiff::compare(baseReport(), second), "a.json", "b.json");
    const QString strExpected = "Before: a.json\n"
                                "After: b.json\n"
                                "\n"
                                "[8] USB3 Vision Driver  (grade changed)\n"
                                "    grade changed normal: normal -> exceptional\n"
                                "    grade changed severity: 0 -> 1\n"
                                "\n"
                                "[1024] Firewall  (grade changed)\n"
                                "    item removed: not available\n"
                                "\n"
                                "[2048] Systm Info\n"
                                "    changed facts.cpu: \"Cpu A\" -> \"Cpu B\"\n"
                                "\n"
                                "Items that differ: 3. Grade changes: 2.\n";
    QCOMPARE(strText, strExpected);
}

void TestVxReportDiff::jsonForm()
{
    QJsonObject second = baseReport();
    editDevices(second, [](QJsonArray &d) { d[1] = device("1-1.2", 6); });
    editItem(second, 8, [](QJsonObject &o) { o["normal"] = false; });
    const QJsonObject root = VxReportDiff::json(VxReportDiff::compare(baseReport(), second), "a.json", "-");
    QCOMPARE(root.value("format").toString(), QStringLiteral("vetrix-compare"));
    QCOMPARE(root.value("formatVersion").toInt(), 1);
    QCOMPARE(root.value("before").toString(), QStringLiteral("a.json"));
    QCOMPARE(root.value("after").toString(), QStringLiteral("-"));
    QCOMPARE(root.value("gradesDiffer").toBool(false), true);
    const QJsonArray items = root.value("items").toArray();
    QCOMPARE(items.size(), 2);
    QCOMPARE(items.at(0).toObject().value("id").toInt(), 8);
    QCOMPARE(items.at(0).toObject().value("gradeChanged").toBool(false), true);
    const QJsonObject usb = items.at(1).toObject();
    QCOMPARE(usb.value("id").toInt(), 512);
    QCOMPARE(usb.value("name").toString(), QStringLiteral("USB Controller Information"));
    QCOMPARE(usb.value("gradeChanged").toBool(true), false);
    const QJsonObject change = usb.value("changes").toArray().at(0).toObject();
    QCOMPARE(change.value("kind").toString(), QStringLiteral("factChanged"));
    QVERIFY(change.value("path").toString().endsWith(".interfaces[number=0].subclass"));
    QCOMPARE(change.value("before").toInt(), 5);
    QCOMPARE(change.value("after").toInt(), 6);
}

void TestVxReportDiff::badReports_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("error");
    auto withItems = [](const QJsonArray &items) {
        return bytesOf(QJsonObject {{"tool", "vetrix-check"}, {"version", "4.1.0"}, {"items", items}});
    };
    const QJsonObject good = baseReport().value("items").toArray().at(0).toObject();
    auto withField = [&](const char *pKey, const QJsonValue &value) {
        QJsonObject object = good;
        object[pKey] = value;
        return withItems(QJsonArray {object});
    };
    QTest::addRow("empty") << QByteArray() << "r.json is not a JSON report: ";
    QTest::addRow("not json") << QByteArray("|----1: SDK Diagnosis\r\n") << "r.json is not a JSON report: ";
    QTest::addRow("cut short") << bytesOf(baseReport()).left(200) << "r.json is not a JSON report: ";
    QTest::addRow("array") << QByteArray("[1,2]") << "r.json is not a vetrix-check report.";
    QTest::addRow("other tool") << QByteArray(R"({"tool":"lsusb","version":"4.1.0","items":[]})")
                                << "r.json is not a vetrix-check report.";
    QTest::addRow("other major version") << QByteArray(R"({"tool":"vetrix-check","version":"3.9.0","items":[]})")
                                         << "r.json comes from vetrix-check version \"3.9.0\"";
    QTest::addRow("no version") << QByteArray(R"({"tool":"vetrix-check","items":[]})")
                                << "r.json comes from vetrix-check version \"\"";
    QTest::addRow("no items") << QByteArray(R"({"tool":"vetrix-check","version":"4.1.0"})")
                              << "r.json has no item list.";
    QTest::addRow("item not an object") << withItems(QJsonArray {1}) << "r.json: an item has no id.";
    QTest::addRow("id a string") << withField("id", "1") << "r.json: an item has no id.";
    QTest::addRow("id a fraction") << withField("id", 1.5) << "r.json: an item has no id.";
    QTest::addRow("unknown id") << withField("id", 3) << "r.json: item 3 is unknown.";
    QTest::addRow("huge id") << withField("id", 4294967296.0) << "r.json: an item has no id.";
    QTest::addRow("id never shown") << withField("id", 16) << "r.json: item 16 is unknown.";
    QTest::addRow("twice") << withItems(QJsonArray {good, good}) << "r.json: item 1 appears twice.";
    QTest::addRow("available missing") << withField("available", QJsonValue())
                                       << "r.json: item 1 has an invalid \"available\".";
    QTest::addRow("normal text") << withField("normal", "yes") << "r.json: item 1 has an invalid \"normal\".";
    QTest::addRow("severity text") << withField("severity", "2") << "r.json: item 1 has an invalid \"severity\".";
    QTest::addRow("facts array") << withField("facts", QJsonArray()) << "r.json: item 1 has an invalid \"facts\".";
    QTest::addRow("lines text") << withField("lines", "x") << "r.json: item 1 has an invalid \"lines\".";
    QTest::addRow("line number") << withField("lines", QJsonArray {1}) << "r.json: item 1 has an invalid \"lines\".";
}

void TestVxReportDiff::badReports()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, error);
    QJsonObject report {{"untouched", true}};
    QString strError;
    QVERIFY(!VxReportDiff::parseReport(bytes, "r.json", &report, &strError));
    QVERIFY2(strError.startsWith(error), qPrintable(strError));
    QCOMPARE(report, (QJsonObject {{"untouched", true}}));
}

void TestVxReportDiff::unreadableFiles()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    QString strError;
    QJsonObject report;
    QVERIFY(!VxReportDiff::readReport(dir.filePath("missing.json"), &report, &strError));
    QCOMPARE(strError, "Cannot read \"" + dir.filePath("missing.json") + "\".");
    QVERIFY(!VxReportDiff::readReport(dir.path(), &report, &strError));
    QCOMPARE(strError, "Cannot read \"" + dir.path() + "\".");
}

void TestVxReportDiff::goodFileIsRead()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    QFile file(dir.filePath("a.json"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytesOf(baseReport()));
    file.close();
    QJsonObject report;
    QString strError;
    QVERIFY2(VxReportDiff::readReport(file.fileName(), &report, &strError), qPrintable(strError));
    QCOMPARE(report, baseReport());
}

QTEST_GUILESS_MAIN(TestVxReportDiff)
#include "tst_vxreportdiff.moc"
