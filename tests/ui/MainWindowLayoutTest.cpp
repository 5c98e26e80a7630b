#include "UiTestSupport.h"

#include <QTimer>

namespace pluvarine::test {
namespace {

// Per control, up to ";": name, parent (its group or window), position, size where the layout fixes
// one (0 otherwise), kind, and the initial text to the end ("*" when it comes from the table).
const QStringList controls = QStringLiteral(R"(
Frame5 frmMain 8 8 273 105 QGroupBox *;Label2 Frame5 8 24 0 0 QLabel *;
Label1 Frame5 168 24 0 0 QLabel Üd:;txtÜd Frame5 192 24 49 19 QLineEdit 0;
Label3 Frame5 248 24 0 0 QLabel mm;Label4 Frame5 8 56 0 0 QLabel *;
Label5 Frame5 144 56 0 0 QLabel X:;lblX Frame5 176 48 65 17 QLabel .....;
Label6 Frame5 144 72 0 0 QLabel Y:;lblY Frame5 176 72 65 17 QLabel .....;
Command5 Frame5 248 56 17 33 QPushButton >;Frame2 frmMain 8 120 273 57 QGroupBox *;
Pmat Frame2 8 16 41 33 QFrame ;cbmaterial Frame2 88 16 177 0 QComboBox ;
Frame4 frmMain 8 184 273 65 QGroupBox *;Label8 Frame4 8 24 0 0 QLabel *;
Label7 Frame4 176 24 0 0 QLabel hs:;txths Frame4 200 24 41 19 QLineEdit 300;
Label3 Frame4 248 24 0 0 QLabel mm;Frame6 frmMain 8 256 273 65 QGroupBox *;
Label9 Frame6 8 24 0 0 QLabel *;Label16 Frame6 168 24 0 0 QLabel   df:;
Combo2 Frame6 192 24 49 0 QComboBox 100;Label3 Frame6 248 24 0 0 QLabel mm;
Frame8 frmMain 8 328 273 65 QGroupBox *;Label11 Frame8 8 24 0 0 QLabel *;
Label19 Frame8 174 24 0 0 QLabel dR:;txtdR Frame8 198 24 41 19 QLineEdit 1800;
Label3 Frame8 248 24 0 0 QLabel mm;Frame7 frmMain 8 400 273 57 QGroupBox *;
Label10 Frame7 8 24 0 0 QLabel *;O42 Frame7 112 16 49 33 QRadioButton 42°;
O72 Frame7 192 16 49 33 QRadioButton 72°;Player frmMain 288 8 257 449 QWidget ;
Command4 frmMain 552 8 129 49 QPushButton *;Command3 frmMain 552 72 129 49 QPushButton *;
Command2 frmMain 552 136 129 49 QPushButton *;Command6 frmMain 552 200 129 49 QPushButton *;
Command1 frmMain 552 264 129 49 QPushButton *;Command7 frmMain 552 400 129 49 QPushButton *;
Bild frmMain 568 336 49 41 QLabel ;Bild2 frmMain 640 360 25 25 QLabel ;
Frame3 frmDetails 8 8 0 0 QGroupBox *;Label1 Frame3 16 24 0 0 QLabel *;
txtDü Frame3 128 24 49 19 QLineEdit *;Label2 Frame3 16 48 0 0 QLabel *;
txtBd Frame3 128 48 49 19 QLineEdit *;Label3 Frame3 16 72 0 0 QLabel *;
txtFn Frame3 128 72 49 19 QLineEdit *;Label4 Frame3 16 96 0 0 QLabel *;
txtDe Frame3 128 96 49 19 QLineEdit *;Label9 Frame3 16 120 0 0 QLabel *;
lblDR Frame3 128 120 0 0 QLabel *;Label11 Frame3 16 144 0 0 QLabel *;
txtH Frame3 128 144 49 19 QLineEdit *;Command1 frmDetails 8 192 89 33 QPushButton *;
Command2 frmDetails 144 192 89 33 QPushButton *;Frame1 frmDetails 240 8 265 481 QGroupBox *;
Picture1 Frame1 8 16 249 457 QLabel ;lblSketchdR Picture1 24 232 0 0 QLabel dR;
lblSketchÜd Picture1 120 8 0 0 QLabel Üd;lblSketchH Picture1 200 232 0 0 QLabel H;
lblSketchhs Picture1 24 400 0 0 QLabel hs;Line1 Picture1 152 24 1 17 QWidget ;
lblMessage frmMessage 8 8 177 41 QLabel Message;OP1 frmMessage 8 56 177 25 QRadioButton Option1;
OP2 frmMessage 8 88 185 25 QRadioButton Option2;Command1 frmMessage 192 8 89 41 QPushButton OK;
Command2 frmMessage 192 64 89 41 QPushButton *)")
                                 .remove(QLatin1Char('\n'))
                                 .split(QLatin1Char(';'));

TEST_F(WindowTest, ControlsStandWhereTheLayoutPutsThem) {
    FrmDetails& details = main->frmDetails();
    FrmMessage& message = main->frmMessage();
    const std::pair<QWidget*, QSize> windows[] = {
        {main.get(), {692, 464}}, {&details, {512, 495}}, {&message, {288, 119}}};
    for (const auto& [window, size] : windows)
        EXPECT_EQ(window->size(), size) << window->objectName().toStdString();
    EXPECT_EQ(main->minimumSize(), main->maximumSize());
    for (const QString& row : controls) {
        SCOPED_TRACE(row.toStdString());
        const QStringList f = row.split(QLatin1Char(' '));
        QWidget* parent = nullptr;
        for (const auto& [window, size] : windows)
            parent = window->objectName() == f[1] ? window
                     : parent                     ? parent
                                                  : window->findChild<QWidget*>(f[1]);
        ASSERT_NE(parent, nullptr);
        auto* widget = parent->findChild<QWidget*>(f[0], Qt::FindDirectChildrenOnly);
        ASSERT_NE(widget, nullptr);
        EXPECT_TRUE(widget->inherits(f[6].toLatin1())) << widget->metaObject()->className();
        const QSize size(f[4].toInt() ? f[4].toInt() : widget->width(),
                         f[5].toInt() ? f[5].toInt() : widget->height());
        EXPECT_EQ(widget->geometry(), QRect(QPoint(f[2].toInt(), f[3].toInt()), size));
        const QString text = row.section(QLatin1Char(' '), 7);
        EXPECT_EQ(shownText(widget), text == QStringLiteral("*") ? shownText(widget) : text);
    }
    EXPECT_EQ(child<QLabel>(&details, "Picture1")->pixmap().size(), QSize(249, 457));
    EXPECT_FALSE(child<QRadioButton>(&message, "OP1")->isChecked() ||
                 child<QRadioButton>(&message, "OP2")->isChecked());
}

TEST_F(WindowTest, InitialStatePicturesAndPlaceOfTheMainWindowAndTheInjectedPreview) {
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
    const std::pair<const char*, int> buttons[] = {{"Command3", 16}, {"Command2", 16},
                                                   {"Command6", 16}, {"Command1", 24},
                                                   {"Command7", 20}, {"Command4", 0}};
    for (const auto& [name, side] : buttons) {
        const QSize size = side ? QSize(side, side) : QSize(33, 17);
        EXPECT_EQ(child<QPushButton>(name)->iconSize(), size) << name;
        EXPECT_EQ(child<QPushButton>(name)->icon().pixmap(size).size(), size) << name;
    }
    auto* player = new QWidget;
    FrmMain window(daten, scene, player);
    EXPECT_EQ(player, window.findChild<QWidget*>(QStringLiteral("Player")));
    EXPECT_EQ(player->geometry(), QRect(288, 8, 257, 449));
    main->show();
    const QRect area = main->screen()->availableGeometry();
    EXPECT_EQ(main->pos(), area.topLeft() + QPoint(area.width() - 692, area.height() - 464) / 2);
    main->move(10, 20);
    main->hide();
    main->show();
    EXPECT_EQ(main->pos(), QPoint(10, 20));
}

} // namespace
} // namespace pluvarine::test
