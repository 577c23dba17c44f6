// The restore wizard: a mode of the main window with its panel, its steps and the highlight
// that glides to what each step is about.
#include "mainwindow/qt/FrmMain.h"

#include "mainwindow/qt/TargetLists.h"
#include "platform/FileFailure.h"
#include "platform/qt/ControlNames.h"
#include "platform/qt/SansFont.h"
#include "platform/qt/Twips.h"
#include "restore/Glide.h"
#include "restore/RestoreRun.h"
#include "restore/qt/ShapeControl.h"
#include "startup/MsgBox.h"

#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>

namespace nv {

namespace {

constexpr int kWizardGrowth = 1305;

// The list control as the restore run sees it.
class ListOfRows : public RestoreList {
public:
    explicit ListOfRows(QListWidget& list) : list_(list) {}
    int count() const override { return list_.count(); }
    std::string text(int row) const override { return list_.item(row)->text().toStdString(); }
    bool selected(int row) const override { return list_.item(row)->isSelected(); }
    void setSelected(int row, bool on) override { list_.item(row)->setSelected(on); }

private:
    QListWidget& list_;
};

int16_t asInt16(int twipsValue) {
    return fRoundHalfEven(twipsValue);
}

} // namespace

void FrmMain::buildWizardPanel(QWidget* canvas) {
    Shape1 = named(new ShapeControl(canvas), "Shape1", "Markering");
    Shape1->setTwips(9240, 1080, 975, 975);
    Shape1->hide();
    // Painted on the window's surface, under the controls.
    Shape1->lower();

    LblRestore[0] = named(new QLabel(PicRestore), "LblRestore_0", {});
    LblRestore[0]->setGeometry(twipsRect(120, 105, 9450, 435));
    LblRestore[0]->setFont(sansFont(9.75, true));
    LblRestore[0]->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    LblRestore[1] = named(new QLabel(PicRestore), "LblRestore_1", {});
    LblRestore[1]->setGeometry(twipsRect(120, 450, 9465, 1635));
    LblRestore[1]->setFont(sansFont(9.75));
    LblRestore[1]->setFrameStyle(QFrame::Box | QFrame::Plain);
    LblRestore[1]->setAutoFillBackground(true);
    LblRestore[1]->setWordWrap(true);
    LblRestore[1]->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    LblRestore[1]->setMargin(twips(45));
    LblRestore[1]->setTextInteractionFlags(Qt::TextSelectableByMouse);
    const char* names[3] = {"CmdWizRestore_0", "CmdWizRestore_1", "CmdWizRestore_2"};
    const char* captions[3] = {"Volgende >>>", "<<< Vorige", "Stoppen"};
    const QRect places[3] = {twipsRect(7365, 2175, 2160, 405), twipsRect(4950, 2190, 2160, 405),
                             twipsRect(2595, 2205, 2160, 405)};
    for (int i = 0; i < 3; ++i) {
        CmdWizRestore[i] = named(new QPushButton(captions[i], PicRestore), names[i], {});
        CmdWizRestore[i]->setGeometry(places[i]);
        CmdWizRestore[i]->setFont(sansFont(9.75));
        CmdWizRestore[i]->setAutoDefault(false);
        connect(CmdWizRestore[i], &QPushButton::clicked, this,
                [this, i] { CmdWizRestore_Click(static_cast<int16_t>(i)); });
    }
    connect(CmdRestore, &QPushButton::clicked, this, &FrmMain::CmdRestore_Click);
}

void FrmMain::setTopTwips(int top) {
    move(x(), twips(top));
}

// A maximised or minimised window keeps its place and size; the panel comes and goes all the
// same, so the wizard never stands half set up.
void FrmMain::CmdRestore_Click() {
    intWizardStep = 1;
    bool normal = !isMaximized() && !isMinimized() && !isFullScreen();
    if (normal)
        setTopTwips(1000);
    fraDirectory->move(fraDirectory->x(), Cmd_Backup->y());
    if (normal)
        setHeightTwips(heightTwips() + kWizardGrowth);
    PicRestore->show();
    subButtons(false);
    subRestoreWizard();
}

void FrmMain::CmdWizRestore_Click(int16_t Index) {
    switch (Index) {
    case 0:
        ++intWizardStep;
        subRestoreWizard();
        break;
    case 1:
        --intWizardStep;
        subRestoreWizard();
        break;
    case 2:
        PicRestore->hide();
        Shape1->hide();
        if (!isMaximized() && !isMinimized() && !isFullScreen())
            setHeightTwips(heightTwips() - kWizardGrowth);
        fraDirectory->move(fraDirectory->x(), Cmd_Backup->y() + twips(1080));
        subButtons(true);
        break;
    default:
        break;
    }
}

void FrmMain::subRestoreWizard() {
    try {
        CmdWizRestore[1]->setEnabled(true);
        LblRestore[0]->setText(QString("Terugzetten backup, stap %1 van 5").arg(intWizardStep));
        enterWizardStep();
    } catch (const FileFailure& failure) {
        LblRestore[1]->setText(QString::fromStdString(
            fWizardFailureText(failure.Description, intWizardStep, intLoop)));
    }
}

void FrmMain::enterWizardStep() {
    switch (intWizardStep) {
    case 1:
        CmdWizRestore[1]->setEnabled(false);
        LblRestore[1]->setText(
            "Deze wizard helpt u met het terugzetten van bestanden\r\nBELANGRIJK: u zet bestanden "
            "terug in het Norvale systeem, deze overschijven de huidige bestanden. Het is aan te "
            "raden om eerst een backup te maken van de huidige bestanden (u dient dan eerst op "
            "'stoppen' te drukken)\r\nDruk op Volgende of Vorige om door de wizard heen te lopen");
        Shape1->hide();
        break;
    case 2:
        LblRestore[1]->setText(
            "Selecteer in de bovenste lijst de bestanden en lokaties welke u wilt terugzetten. U "
            "kunt meerdere bestanden selecteren door de CTRL knop ingedrukt te houden en de "
            "bestanden naar keuze aan te klikken met de muis. Met CTRL-A selecteert u de hele "
            "lijst (dit is reeds voor u gedaan)");
        LstSelectedFiles->setFocus();
        for (int n = 0; n < LstSelectedFiles->count(); ++n) {
            intLoop = static_cast<int16_t>(n);
            LstSelectedFiles->item(n)->setSelected(true);
        }
        intLoop = static_cast<int16_t>(LstSelectedFiles->count());
        MoveShape(0, asInt16(pixelsToTwips(LstSelectedFiles->y())), 250,
                  asInt16(pixelsToTwips(LstSelectedFiles->height())));
        break;
    case 3:
        LblRestore[1]->setText(
            "Selecteer nu uit welke map (directory) u de bestanden wilt halen om terug te zetten. "
            "Dubbelklik op een map waardoor u ook kunt zien welke bestanden in de map "
            "zitten.\r\nIndien een bestand in de bovenste lijst NIET in een backup map zit dan "
            "wordt deze uiteraard ook niet teruggezet");
        MoveShape(0, asInt16(pixelsToTwips(fraDirectory->y())), 250,
                  asInt16(pixelsToTwips(fraDirectory->height())));
        TargetDirectories->setFocus();
        break;
    case 4:
        LblRestore[1]->setText(
            QString("U staat op het punt om bestanden terug te zetten. U heeft %1 bestanden "
                    "geselecteerd om terug te zetten.\r\nDeze worden gehaald uit de map %2\r\nDruk "
                    "nu op Volgende om de backup definitief terug te zetten")
                .arg(LstSelectedFiles->selectedItems().size())
                .arg(TargetDirectories->path()));
        MoveShape(asInt16(pixelsToTwips(centralWidget()->width()) - 500),
                  asInt16(pixelsToTwips(PicRestore->y()) - 300), 250, 250);
        Shape1->setShapeKind(ShapeControl::Circle);
        CmdWizRestore[0]->setFocus();
        break;
    case 5: {
        Shape1->hide();
        if (MsgBox("U staat op het punt om de backup terug te zetten. Wilt u doorgaan?",
                   Buttons::YesNo, Icon::Exclamation, DefaultButton::First,
                   "Terugzetten Backup") != Answer::Yes) {
            --intWizardStep;
            return;
        }
        ListOfRows rows(*LstSelectedFiles);
        std::string caption =
            fRestoreSelectedRows(rows, TargetDirectories->path().toStdString(), intLoop);
        LblRestore[1]->setText(QString::fromStdString(caption));
        break;
    }
    case 6:
        CmdWizRestore_Click(2);
        break;
    default:
        break;
    }
}

void FrmMain::MoveShape(int16_t subToX, int16_t subToY, int16_t subWidth, int16_t subHeight) {
    Shape1->setShapeKind(ShapeControl::Rectangle);
    const int16_t stepX = fGlideStep(subToX - Shape1->leftTwips());
    const int16_t stepY = fGlideStep(subToY - Shape1->topTwips());
    Shape1->show();
    // Every position reaches the screen before the next one is worked out.
    for (int i = 0; i < 1000; ++i) {
        Shape1->moveTwips(Shape1->leftTwips() + stepX, Shape1->topTwips() + stepY);
        Shape1->repaint();
    }
    Shape1->setTwips(subToX, subToY, subWidth, subHeight);
}

} // namespace nv
