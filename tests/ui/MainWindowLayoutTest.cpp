#include "UiTestSupport.h"
#include "ui/CaptionButton.h"
#include "ui/FittedText.h"
#include "ui/UiText.h"

namespace pluvarine::test {
namespace {

// Per control, up to ";": name, parent (its group or window), position, size where the layout fixes
// one (0 otherwise), kind, and its text to the end: "#" and the id of a text of the string table,
// "*" for a value filled in from the design, otherwise the text the layout carries.
const QStringList controls = QStringLiteral(R"(
Frame5 frmMain 8 8 273 105 QGroupBox #113;Label2 Frame5 8 24 0 0 QLabel #114;
Label1 Frame5 168 24 0 0 QLabel Üd:;txtÜd Frame5 192 24 49 19 QLineEdit 0;
Label3 Frame5 248 24 0 0 QLabel mm;Label4 Frame5 8 56 0 0 QLabel #115;
Label5 Frame5 144 56 0 0 QLabel X:;lblX Frame5 176 48 65 17 QLabel .....;
Label6 Frame5 144 72 0 0 QLabel Y:;lblY Frame5 176 72 65 17 QLabel .....;
Command5 Frame5 248 56 17 33 QPushButton >;Frame2 frmMain 8 120 273 57 QGroupBox #116;
Pmat Frame2 8 16 41 33 QFrame ;cbmaterial Frame2 88 16 177 0 QComboBox ;
Frame4 frmMain 8 184 273 65 QGroupBox #121;Label8 Frame4 8 24 0 0 QLabel #122;
Label7 Frame4 176 24 0 0 QLabel hs:;txths Frame4 200 24 41 19 QLineEdit 300;
Label3 Frame4 248 24 0 0 QLabel mm;Frame6 frmMain 8 256 273 65 QGroupBox #123;
Label9 Frame6 8 24 0 0 QLabel #124;Label16 Frame6 168 24 0 0 QLabel   df:;
Combo2 Frame6 192 24 49 0 QComboBox 100;Label3 Frame6 248 24 0 0 QLabel mm;
Frame8 frmMain 8 328 273 65 QGroupBox #125;Label11 Frame8 8 24 0 0 QLabel #126;
Label19 Frame8 174 24 0 0 QLabel dR:;txtdR Frame8 198 24 41 19 QLineEdit 1800;
Label3 Frame8 248 24 0 0 QLabel mm;Frame7 frmMain 8 400 273 57 QGroupBox #127;
Label10 Frame7 8 24 0 0 QLabel #128;O42 Frame7 112 16 49 33 QRadioButton 42°;
O72 Frame7 192 16 49 33 QRadioButton 72°;Player frmMain 288 8 257 449 QWidget ;
Command4 frmMain 552 8 129 49 QPushButton #132;Command3 frmMain 552 72 129 49 QPushButton #130;
Command2 frmMain 552 136 129 49 QPushButton #131;Command6 frmMain 552 200 129 49 QPushButton #133;
Command1 frmMain 552 264 129 49 QPushButton #129;Command7 frmMain 552 400 129 49 QPushButton #8001;
Bild frmMain 568 336 49 41 QLabel ;Bild2 frmMain 640 360 25 25 QLabel ;
Frame3 frmDetails 8 8 0 0 QGroupBox #1001;Label1 Frame3 16 24 0 0 QLabel #1002;
txtDü Frame3 128 24 49 19 QLineEdit *;Label2 Frame3 16 48 0 0 QLabel #1003;
txtBd Frame3 128 48 49 19 QLineEdit *;Label3 Frame3 16 72 0 0 QLabel #1004;
txtFn Frame3 128 72 49 19 QLineEdit *;Label4 Frame3 16 96 0 0 QLabel #1005;
txtDe Frame3 128 96 49 19 QLineEdit *;Label9 Frame3 16 120 0 0 QLabel #1006;
lblDR Frame3 128 120 0 0 QLabel *;Label11 Frame3 16 144 0 0 QLabel #6001;
txtH Frame3 128 144 49 19 QLineEdit *;Command1 frmDetails 8 192 89 33 QPushButton #1007;
Command2 frmDetails 144 192 89 33 QPushButton #1008;Frame1 frmDetails 240 8 265 481 QGroupBox #6000;
Picture1 Frame1 8 16 249 457 QLabel ;lblSketchdR Picture1 24 232 0 0 QLabel dR;
lblSketchÜd Picture1 120 8 0 0 QLabel Üd;lblSketchH Picture1 200 232 0 0 QLabel H;
lblSketchhs Picture1 24 400 0 0 QLabel hs;Line1 Picture1 152 24 1 17 QWidget ;
lblMessage frmMessage 8 8 177 41 QLabel Message;OP1 frmMessage 8 56 177 25 QRadioButton Option1;
OP2 frmMessage 8 88 185 25 QRadioButton Option2;Command1 frmMessage 192 8 89 41 QPushButton OK;
Command2 frmMessage 192 64 89 41 QPushButton #131)")
                                 .remove(QLatin1Char('\n'))
                                 .split(QLatin1Char(';'));

// In every language the same layout, and every text from the table of the language.
TEST_F(WindowTest, ControlsStandWhereTheLayoutPutsThemWithTheTextsOfTheActiveLanguage) {
    for (const Language& language : languages) {
        SCOPED_TRACE(language.tag);
        LanguageScope scope(language.systemLocale, language.lcid);
        FrmMain window(daten, scene, nullptr);
        window.ApplyLanguage();
        EXPECT_EQ(window.size(), QSize(692, 464));
        EXPECT_EQ(window.minimumSize(), window.maximumSize());
        EXPECT_EQ(window.frmDetails().size(), QSize(512, 495));
        EXPECT_EQ(window.frmMessage().size(), QSize(288, 119));
        EXPECT_EQ(window.windowTitle().toStdString(), LoadText(112, language.lcid));
        EXPECT_EQ(window.frmDetails().windowTitle().toStdString(), LoadText(1000, language.lcid));
        EXPECT_EQ(window.frmMessage().windowTitle(), QStringLiteral("Fallrohr"));
        // The windows and every control that holds others, by name; a row comes after its parent.
        QHash<QString, QWidget*> parents{{QStringLiteral("frmMain"), &window},
                                         {QStringLiteral("frmDetails"), &window.frmDetails()},
                                         {QStringLiteral("frmMessage"), &window.frmMessage()}};
        for (const QString& row : controls) {
            SCOPED_TRACE(row.toStdString());
            const QStringList f = row.split(QLatin1Char(' '));
            ASSERT_TRUE(parents.contains(f[1]));
            QWidget* widget = parents[f[1]]->findChild<QWidget*>(f[0], Qt::FindDirectChildrenOnly);
            ASSERT_NE(widget, nullptr);
            parents[f[0]] = widget;
            EXPECT_TRUE(widget->inherits(f[6].toLatin1())) << widget->metaObject()->className();
            const QSize size(f[4].toInt() ? f[4].toInt() : widget->width(),
                             f[5].toInt() ? f[5].toInt() : widget->height());
            EXPECT_EQ(widget->geometry(), QRect(QPoint(f[2].toInt(), f[3].toInt()), size));
            QString text = row.section(QLatin1Char(' '), 7);
            if (text.startsWith(QLatin1Char('#')))
                text = QString::fromStdString(LoadText(text.mid(1).toInt(), language.lcid));
            EXPECT_EQ(shownText(widget), text == QStringLiteral("*") ? shownText(widget) : text);
        }
    }
}

// The system default locale alone decides whether help is offered and the version check runs.
TEST_F(WindowTest, SystemLocaleHidesHelpOrSkipsTheVersionCheck) {
    const std::tuple<const char*, bool, bool> cases[] = {
        {"hr_HR.UTF-8", false, false}, {"hr_BA.UTF-8", false, false}, {"ru_RU.UTF-8", true, true},
        {"ru_MD.UTF-8", true, true},   {"de_DE.UTF-8", true, false},  {"sr_RS@latin", true, false}};
    for (const auto& [locale, helpShown, skipVersionCheck] : cases) {
        LanguageScope scope(locale, TextLanguage::EnglishUnitedStates);
        FrmMain window(daten, scene, nullptr);
        EXPECT_EQ(window.ApplyLanguage(), skipVersionCheck) << locale;
        window.show();
        EXPECT_EQ(child<QWidget>("Command7", &window)->isVisible(), helpShown) << locale;
    }
}

// ApplyLanguage creates both dialogs, hidden and on top; the material list fills in the active
// language, and as nothing is built at load the selection applies nothing. Then the first states
// of the controls (the question's options: DialogsTest, Answers/OkWithoutChoice), the host's
// pictures, the icons, an injected preview and a long caption.
TEST_F(WindowTest, InitialStateDialogsMaterialsPicturesAndCaptionsOfTheMainWindow) {
    LanguageScope scope("de_DE.UTF-8", TextLanguage::German);
    EXPECT_FALSE(main->dialogsCreated());
    main->ApplyLanguage();
    EXPECT_TRUE(main->dialogsCreated() && !main->isVisible());
    const QWidget* dialogs[] = {&main->frmDetails(), &main->frmMessage()};
    for (const QWidget* dialog : dialogs)
        EXPECT_TRUE(!dialog->isVisible() && dialog->windowFlags() & Qt::WindowStaysOnTopHint);
    main->fillMaterialList();
    auto* list = child<QComboBox>("cbmaterial");
    QStringList names;
    for (int i = 0; i < list->count(); ++i)
        names << list->itemText(i);
    EXPECT_EQ(names.join(QLatin1Char('|')), QStringLiteral("Kunstoff-Grau|Kupfer|Zink|Alu"));
    EXPECT_EQ(list->currentIndex(), 0);
    EXPECT_TRUE(daten.design.materialFile.empty() && scene.calls().empty());
    EXPECT_EQ(child<QLabel>("Picture1", &main->frmDetails())->pixmap().size(), QSize(249, 457));
    EXPECT_TRUE(child<QRadioButton>("O42")->isChecked() &&
                child<QComboBox>("Combo2")->isEditable());
    auto* timer = child<QTimer>("Timer1");
    EXPECT_TRUE(timer->interval() == 100 && timer->isSingleShot() && !timer->isActive());
    // The host's two pictures are held, not shown: the opaque toolbar image and the cursor,
    // transparent around its cross hairs.
    EXPECT_FALSE(child<QLabel>("Bild")->isVisibleTo(main.get()) ||
                 child<QLabel>("Bild2")->isVisibleTo(main.get()));
    for (const auto& [image, cornerAlpha] :
         {std::pair{main->bildPicture(), 255}, std::pair{main->bild2Picture(), 0}})
        EXPECT_TRUE(image.size() == QSize(30, 30) && image.depth() == 32 &&
                    qAlpha(image.pixel(0, 0)) == cornerAlpha);
    EXPECT_GT(qAlpha(main->bild2Picture().pixel(15, 2)), 0);
    EXPECT_EQ(main->windowIcon().availableSizes().value(0), QSize(48, 48));
    // clang-format off
    const std::pair<const char*, QSize> buttons[] = {
        {"Command3", {16, 16}}, {"Command2", {16, 16}}, {"Command6", {16, 16}},
        {"Command1", {24, 24}}, {"Command7", {20, 20}}, {"Command4", {33, 17}}};
    // clang-format on
    for (const auto& [name, size] : buttons) {
        EXPECT_EQ(child<QPushButton>(name)->iconSize(), size) << name;
        EXPECT_EQ(child<QPushButton>(name)->icon().pixmap(size).size(), size) << name;
    }
    auto* player = new QWidget;
    FrmMain window(daten, scene, player);
    EXPECT_EQ(player, window.findChild<QWidget*>(QStringLiteral("Player")));
    EXPECT_EQ(player->geometry(), QRect(288, 8, 257, 449));
    // A long caption wraps, in full type; the picture stands beside the caption.
    auto* adopt = child<CaptionButton>("Command1", &main->frmDetails()); // 89 wide
    EXPECT_TRUE(adopt->captionFits() && !adopt->captionShrunk());
    EXPECT_GT(adopt->captionRect().height(), adopt->fontMetrics().height()); // two lines
    EXPECT_LE(adopt->captionRect().width(), 89);
    auto* refresh = child<CaptionButton>("Command1");
    const QRect beside = refresh->captionRect();
    refresh->setIcon(QIcon());
    EXPECT_LT(refresh->captionRect().left(), beside.left());
    EXPECT_EQ(refresh->captionRect().size(), beside.size());
}

TEST(FittedText, TakesTheLargestFittingSizeDownToTheSmallestAndBack) {
    const int flags = Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap;
    const QString text = QStringLiteral("Ширина водосточного желоба");
    const QSize room(108, 24);
    ASSERT_FALSE(textFits(windowFont(), text, room, flags));
    QFont fitted = fittingFont(windowFont(), text, room, flags);
    EXPECT_TRUE(textFits(fitted, text, room, flags));
    fitted.setPixelSize(fitted.pixelSize() + 1);
    EXPECT_FALSE(textFits(fitted, text, room, flags));
    const QString word = QStringLiteral("Unbreakablewordthatisfartoolong");
    EXPECT_EQ(fittingFont(windowFont(), word, QSize(20, 10), flags).pixelSize(),
              smallestCaptionPixelSize);
    // A label returns to the window size for a short text.
    QWidget window;
    window.setFont(windowFont());
    auto* label = new QLabel(&window);
    label->setGeometry(0, 0, 108, 24);
    label->setWordWrap(true);
    setFittedText(label, QStringLiteral("Grubość pokrycia dachowego i jeszcze więcej"));
    EXPECT_LT(label->font().pixelSize(), windowFont().pixelSize());
    setFittedText(label, QStringLiteral("Nachylenie"));
    EXPECT_EQ(label->font().pixelSize(), windowFont().pixelSize());
}

} // namespace
} // namespace pluvarine::test
