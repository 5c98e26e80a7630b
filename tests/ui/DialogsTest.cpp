#include "UiTestSupport.h"
#include "base/Conversions.h"
#include "platform/system/widgets/HelpWindow.h"
#include "tests/support/FileBytes.h"

#include <tuple>

namespace pluvarine::test {
namespace {

// The construction question: an overhang between 0 and 200 asks, the answer rebuilds.
class ChoiceDialog : public WindowTest {
protected:
    ChoiceDialog() : scope("en_US.UTF-8", TextLanguage::EnglishUnitedStates) {
        main->ApplyLanguage();
        main->show();
        child<QLineEdit>("txtÜd")->setText(QStringLiteral("150"));
    }
    QRadioButton* option(const char* name) { return child<QRadioButton>(name, message); }
    bool sceneHasPart(const std::string& fragment) const {
        return std::ranges::any_of(scene.objects(), [&](const auto& o) {
            return o.partFile.find(fragment) != std::string::npos;
        });
    }

    LanguageScope scope;
    FrmMessage* message = &main->frmMessage();
};

struct Answer {
    const char* name;
    const char* option; // "": none selected
    const char* button;
    bool answered, bend, doNot;
    friend void PrintTo(const Answer& a, std::ostream* os) { *os << a.name; } // readable listings
};

class Answers : public ChoiceDialog, public ::testing::WithParamInterface<Answer> {};

TEST_P(Answers, AreAskedForWithoutBuildingAndRecordRebuildAndShowTheMainWindow) {
    const Answer& a = GetParam();
    main->Command1_Click(); // the question is asked, nothing is built
    EXPECT_TRUE(message->isVisible() && main->isEnabled()); // the main window stays usable
    EXPECT_EQ(
        child<QLabel>("lblMessage", message)->text(),
        QStringLiteral("Do you like to choose a continous or a bended downpipe construction?"));
    EXPECT_EQ(option("OP1")->text() + "|" + option("OP2")->text(),
              QStringLiteral("continous downpipe|bend construction"));
    EXPECT_TRUE(message->fall() == 1 && scene.objects().empty());
    EXPECT_FALSE(child<QRadioButton>("O42")->isEnabled() || daten.design.constructionAnswered);
    scene.clearCalls();
    main->hide();
    if (*a.option)
        click(a.option, message);
    click(a.button, message);
    const DesignRecord& d = daten.design;
    EXPECT_EQ((std::vector<bool>{message->doNot(), d.constructionAnswered, d.modelBuilt,
                                 d.bendChosen, d.bendPartsBuilt, sceneHasPart("Knick_100_42"),
                                 child<QRadioButton>("O72")->isEnabled(), sceneHasPart("Bogen_")}),
              (std::vector<bool>{a.doNot, a.answered, a.answered, a.bend, a.bend, a.bend, a.bend,
                                 false}));
    EXPECT_EQ(rebuilds(), a.answered ? 1 : 0);
    EXPECT_TRUE(!message->isVisible() && main->isVisible());
    // The next rebuild asks only while there is no answer; the earlier selection stays marked.
    main->Command1_Click();
    EXPECT_EQ(rebuilds(), a.answered ? 2 : 1); // asking, too, starts with loading the scene
    EXPECT_EQ(message->isVisible(), !a.answered);
    for (const char* name : {"OP1", "OP2"})
        EXPECT_EQ(option(name)->isChecked(), std::string(a.option) == name) << name;
}

INSTANTIATE_TEST_SUITE_P(
    Choice, Answers,
    ::testing::Values(Answer{"Continuous", "OP1", "Command1", true, false, false},
                      Answer{"Bend", "OP2", "Command1", true, true, false},
                      Answer{"Cancel", "OP2", "Command2", false, false, true},
                      Answer{"OkWithoutChoice", "", "Command1", false, false, false}),
    [](const auto& answer) { return std::string(answer.param.name); });

// A click anywhere on an option's area selects it, also far right of a short text.
TEST_F(ChoiceDialog, OnlyCaseOneIsEvaluatedAndOptionsCanBeLeftOut) {
    message->showDialog();
    message->Message_Initiate(2, "Another question?", true, "yes", "no");
    QTest::mouseClick(option("OP2"), Qt::LeftButton, {}, QPoint(180, 12));
    EXPECT_TRUE(option("OP2")->isChecked());
    QTest::mouseClick(option("OP1"), Qt::LeftButton, {}, QPoint(150, 3));
    EXPECT_TRUE(option("OP1")->isChecked() && !option("OP2")->isChecked());
    click("Command1", message);
    EXPECT_TRUE(!daten.design.constructionAnswered && rebuilds() == 0);
    message->showDialog();
    message->Message_Initiate(1, "Just a note", false, "a", "b");
    EXPECT_FALSE(option("OP1")->isVisible() || option("OP2")->isVisible());
}

const char* const fields[] = {"txtDü", "txtBd", "txtFn", "txtDe", "txtH"};

class DetailsDialog : public WindowTest {
protected:
    DetailsDialog() {
        daten.roof = RoofData{500, 150, 35, 40, 270};
        daten.design.heightH = 5600;
    }
    QLineEdit* field(const char* name) { return child<QLineEdit>(name, details); }
    QString shown() {
        QString text;
        for (const char* name : fields)
            text += field(name)->text() + QLatin1Char('|');
        return text + child<QLabel>("lblDR", details)->text();
    }
    // Overhang, gutter width, pitch, roofing thickness, direction, height H; the window's overhang.
    QString values() const {
        const RoofData& r = daten.roof;
        QString text;
        for (const double value : {r.roofOverhang, r.gutterWidth, r.roofPitch, r.roofingThickness,
                                   r.roofDirection, daten.design.heightH})
            text += QString::number(value) + QLatin1Char(' ');
        return text + QString::fromStdString(main->overhangText());
    }

    FrmDetails* details = &main->frmDetails();
};

// Close changes nothing, opening again (also when open) fills the fields again.
TEST_F(DetailsDialog, OpeningFillsTheOverhangWithASignPositionAndTheOthersPlainCloseKeepsAll) {
    LanguageScope scope("de_DE.UTF-8", TextLanguage::German);
    main->ApplyLanguage();
    main->show();
    click("Command6");
    EXPECT_TRUE(details->isVisible() && main->isVisible() && !details->isModal());
    EXPECT_EQ(shown(), QStringLiteral(" 500|150|35|40|5600|270"));
    field("txtBd")->setText(QStringLiteral("77"));
    click("Command2", details);
    EXPECT_TRUE(!details->isVisible() && rebuilds() == 0);
    EXPECT_EQ(values(), QStringLiteral("500 150 35 40 270 5600 0"));
    daten.roof = RoofData{0.5, 150, 22.5, 40, -90};
    details->open(); // fractions follow their own rules
    field("txtBd")->setText(QStringLiteral("999"));
    details->open();
    const QString pitch = QString::fromStdString(doubleToText(22.5));
    EXPECT_EQ(shown(), QStringLiteral(" .5|150|%1|40|5600|-90").arg(pitch));
    details->close(); // through its frame
    details->open();
    EXPECT_TRUE(details->isVisible());
    // The sketch leaves the places of its symbols free.
    const QImage image = child<QLabel>("Picture1", details)->pixmap().toImage();
    EXPECT_FALSE(image.hasAlphaChannel());
    for (const QPoint at : {QPoint(24, 232), QPoint(120, 8), QPoint(200, 232), QPoint(24, 400)})
        for (int d = 0; d < 14 * 12; ++d)
            EXPECT_EQ(image.pixel(at + QPoint(d % 14, d / 14)), qRgb(255, 255, 255)) << at.x();
}

// A value wider than its field shows its start, in every field and language: the height of a
// 30° roof, 2873.397459621556, shows "2873.39745" (not "5962156").
TEST_F(DetailsDialog, AFieldTooNarrowForItsValueShowsItsStart) {
    daten.roof = RoofData{0.123456789012345, 150.123456789012, 30.123456789012, 40.123456789012,
                          270.123456789012};
    daten.design.heightH = 2873.397459621556;
    for (const Language& language : languages) {
        LanguageScope scope(language.systemLocale, language.lcid);
        main->ApplyLanguage();
        details->open();
        for (const char* name : fields) {
            QLineEdit* box = field(name);
            EXPECT_GT(box->fontMetrics().horizontalAdvance(box->text()), box->width()) << name;
            EXPECT_EQ(box->cursorPosition(), 0) << language.tag << ' ' << name;
        }
        details->close();
    }
}

// Texts typed into the fields, then the values, the rebuilds so far and the wall offset the last
// rebuild saw; the dialog stays open while nothing was adopted. An empty field blocks adopting
// without notice; the overhang and the direction reach the design only through the main window; a
// text that is no number leaves its value, and as the overhang it builds nothing.
TEST_F(DetailsDialog, AdoptingSetsTheValuesRebuildsOnceAndHidesUnlessAFieldIsEmpty) {
    const char* const unchanged = "500 150 35 40 270 5600 0";
    // clang-format off
    const std::tuple<const char*, const char*, int, double> steps[] = {
        {"|77|35|40|5600", unchanged, 0, 0}, {" 500||35|40|5600", unchanged, 0, 0},
        {" 500|77||40|5600", unchanged, 0, 0}, {" 500|77|35||5600", unchanged, 0, 0},
        {" 500|77|35|40|", unchanged, 0, 0},
        {"350|120|30|+25|4800", "500 120 30 25 270 4800 350", 1, 410}, // 350 + 120 - 60
        {"1+2|1+2|20|25|4800", "500 120 20 25 270 4800 1+2", 2, 410}};
    // clang-format on
    for (const auto& [typed, expected, rebuilt, wallOffset] : steps) {
        SCOPED_TRACE(typed);
        details->open();
        for (int i = 0; i < 5; ++i)
            field(fields[i])->setText(QString::fromUtf8(typed).section(QLatin1Char('|'), i, i));
        click("Command1", details);
        EXPECT_EQ(values(), QString::fromUtf8(expected));
        EXPECT_EQ(rebuilds(), rebuilt);
        EXPECT_EQ(daten.design.wallOffset, wallOffset);
        EXPECT_EQ(details->isVisible(), rebuilt == 0);
    }
    EXPECT_FALSE(daten.design.modelBuilt);
}

TEST(HelpWindowTest, OpensTheTopicOrReportsTheProblemInTheWindow) {
    QTemporaryDir folder;
    const QString topic = folder.filePath(QStringLiteral("Tectaro.chm/Pluvarine.htm"));
    writeFile(topic.toStdString(),
              "<html><head><title>Downpipes</title></head><body><h1>Downpipe</h1>");
    writeFile(folder.filePath(QStringLiteral("Packed.chm")).toStdString(), "ITSF");
    // Address in the folder, whether the page is found, and a text the window shows; the topic
    // opens after a problem, also when it was shown before the problem.
    const std::tuple<const char*, bool, const char*> cases[] = {
        {"Tectaro.chm::/Missing.htm", false, "Missing.htm"},
        {"Tectaro.chm::/Missing.htm", false, "cannot be found"},
        {"Tectaro.chm::/Pluvarine.htm", true, "Downpipe"},
        {"Nothing.chm::/Pluvarine.htm", false, "Nothing.chm"},
        {"Packed.chm::/Pluvarine.htm", false, "Pluvarine.htm"},
        {"Tectaro.chm::/Pluvarine.htm", true, "Downpipe"}};
    HelpWindow help;
    for (const auto& [address, found, shows] : cases) {
        SCOPED_TRACE(address);
        help.HtmlHelp((folder.path() + QLatin1Char('/') + QLatin1String(address)).toStdString());
        const QString text = help.browser()->toPlainText();
        EXPECT_TRUE(help.isVisible() && text.contains(QLatin1String(shows)));
        EXPECT_EQ(help.shownPage(), found ? topic : QString());
        EXPECT_TRUE(!found || (!text.contains(QStringLiteral("cannot be found")) &&
                               help.windowTitle() == QStringLiteral("Downpipes")));
    }
}

TEST(ShippedHelp, ThePageAndEverythingItRefersToExist) {
    const QString folder = QStringLiteral(PLUVARINE_SOURCE_DIR "/data/help");
    QFile page(folder + QStringLiteral("/Pluvarine.htm"));
    ASSERT_TRUE(page.open(QIODevice::ReadOnly));
    const QRegularExpression reference(QStringLiteral(R"re((?:src|href)="([^"#:]+)")re"));
    int references = 0;
    for (const auto& match : reference.globalMatch(QString::fromUtf8(page.readAll()))) {
        ++references;
        EXPECT_TRUE(QFile::exists(folder + QLatin1Char('/') + match.captured(1)))
            << match.captured(1).toStdString();
    }
    EXPECT_GE(references, 1);
}

} // namespace
} // namespace pluvarine::test
