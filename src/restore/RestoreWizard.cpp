// The restore wizard: a mode of the main window with its panel, its steps and the highlight
// that glides to what each step is about.
#include "mainwindow/FrmMain.h"

#include "platform/FileFailure.h"
#include "restore/Glide.h"
#include "restore/RestoreRun.h"
#include "startup/MsgBox.h"

namespace nv {

namespace {

constexpr int kWizardGrowth = 1305;

// The list control as the restore run sees it.
class ListOfRows : public RestoreList {
public:
    explicit ListOfRows(ListBox& list) : list_(list) {}
    int count() const override { return list_.count(); }
    std::string text(int row) const override { return list_.list(row); }
    bool selected(int row) const override { return list_.selected(row); }
    void setSelected(int row, bool on) override { list_.setSelected(row, on); }

private:
    ListBox& list_;
};

int selectedRows(const ListBox& list) {
    int n = 0;
    for (int row = 0; row < list.count(); ++row)
        n += list.selected(row) ? 1 : 0;
    return n;
}

} // namespace

// A maximised or minimised window keeps its place and size; the panel comes and goes all the
// same, so the wizard never stands half set up.
void FrmMain::CmdRestore_Click() {
    intWizardStep = 1;
    const bool normal = Me->state() == WindowState::Normal;
    if (normal)
        Me->setTop(1000);
    fraDirectory->setTop(Cmd_Backup->place().top);
    if (normal)
        Me->setHeight(Me->place().height + kWizardGrowth);
    PicRestore->setVisible(true);
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
        PicRestore->setVisible(false);
        Shape1->setVisible(false);
        if (Me->state() == WindowState::Normal)
            Me->setHeight(Me->place().height - kWizardGrowth);
        fraDirectory->setTop(Cmd_Backup->place().top + 1080);
        subButtons(true);
        break;
    default:
        break;
    }
}

void FrmMain::subRestoreWizard() {
    try {
        CmdWizRestore[1]->setEnabled(true);
        LblRestore[0]->setCaption("Terugzetten backup, stap " + std::to_string(intWizardStep) +
                                  " van 5");
        enterWizardStep();
    } catch (const FileFailure& failure) {
        LblRestore[1]->setCaption(fWizardFailureText(failure.Description, intWizardStep, intLoop));
    }
}

void FrmMain::enterWizardStep() {
    switch (intWizardStep) {
    case 1:
        CmdWizRestore[1]->setEnabled(false);
        LblRestore[1]->setCaption(
            "Deze wizard helpt u met het terugzetten van bestanden\r\nBELANGRIJK: u zet bestanden "
            "terug in het Norvale systeem, deze overschijven de huidige bestanden. Het is aan te "
            "raden om eerst een backup te maken van de huidige bestanden (u dient dan eerst op "
            "'stoppen' te drukken)\r\nDruk op Volgende of Vorige om door de wizard heen te lopen");
        Shape1->setVisible(false);
        break;
    case 2: {
        LblRestore[1]->setCaption(
            "Selecteer in de bovenste lijst de bestanden en lokaties welke u wilt terugzetten. U "
            "kunt meerdere bestanden selecteren door de CTRL knop ingedrukt te houden en de "
            "bestanden naar keuze aan te klikken met de muis. Met CTRL-A selecteert u de hele "
            "lijst (dit is reeds voor u gedaan)");
        LstSelectedFiles->setFocus();
        for (int n = 0; n < LstSelectedFiles->count(); ++n) {
            intLoop = static_cast<int16_t>(n);
            LstSelectedFiles->setSelected(n, true);
        }
        intLoop = static_cast<int16_t>(LstSelectedFiles->count());
        const TwipsRect list = LstSelectedFiles->place();
        MoveShape(0, fRoundHalfEven(list.top), 250, fRoundHalfEven(list.height));
        break;
    }
    case 3: {
        LblRestore[1]->setCaption(
            "Selecteer nu uit welke map (directory) u de bestanden wilt halen om terug te zetten. "
            "Dubbelklik op een map waardoor u ook kunt zien welke bestanden in de map "
            "zitten.\r\nIndien een bestand in de bovenste lijst NIET in een backup map zit dan "
            "wordt deze uiteraard ook niet teruggezet");
        const TwipsRect frame = fraDirectory->place();
        MoveShape(0, fRoundHalfEven(frame.top), 250, fRoundHalfEven(frame.height));
        TargetDirectories.list.setFocus();
        break;
    }
    case 4:
        LblRestore[1]->setCaption(
            "U staat op het punt om bestanden terug te zetten. U heeft " +
            std::to_string(selectedRows(*LstSelectedFiles)) +
            " bestanden geselecteerd om terug te zetten.\r\nDeze worden gehaald uit de map " +
            TargetDirectories.path() +
            "\r\nDruk nu op Volgende om de backup definitief terug te zetten");
        MoveShape(fRoundHalfEven(Me->innerWidth() - 500),
                  fRoundHalfEven(PicRestore->place().top - 300), 250, 250);
        Shape1->setKind(Shape::kCircle);
        CmdWizRestore[0]->setFocus();
        break;
    case 5: {
        Shape1->setVisible(false);
        if (MsgBox("U staat op het punt om de backup terug te zetten. Wilt u doorgaan?",
                   Buttons::YesNo, Icon::Exclamation, DefaultButton::First,
                   "Terugzetten Backup") != Answer::Yes) {
            --intWizardStep;
            return;
        }
        ListOfRows rows(*LstSelectedFiles);
        LblRestore[1]->setCaption(fRestoreSelectedRows(rows, TargetDirectories.path(), intLoop));
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
    Shape1->setKind(Shape::kRectangle);
    const int16_t stepX = fGlideStep(subToX - Shape1->place().left);
    const int16_t stepY = fGlideStep(subToY - Shape1->place().top);
    Shape1->setVisible(true);
    // Every position reaches the screen before the next one is worked out.
    for (int i = 0; i < 1000; ++i) {
        TwipsRect p = Shape1->place();
        p.left += stepX;
        p.top += stepY;
        Shape1->setPlace(p);
        Shape1->repaint();
    }
    Shape1->setPlace({subToX, subToY, subWidth, subHeight});
}

} // namespace nv
