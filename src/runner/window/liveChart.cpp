#include "runner/window/liveChart.h"

#include "platform/text.h"
#include "runner/chartData.h"
#include "runner/chartRange.h"
#include "runner/window/chartLines.h"
#include "runner/window/chartPicture.h"
#include "runner/window/chartView.h"
#include "runner/window/ui_liveChart.h"
#include "shared/fileError.h"
#include "shared/textFile.h"

#include <QBuffer>
#include <QElapsedTimer>
#include <QImage>
#include <QSignalBlocker>
#include <QTimer>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace zint {
namespace {

constexpr int eventRole = Qt::UserRole; ///< of a list item: the event, from 0
constexpr int checkedAtFirst = 4;

std::size_t eventOf(const QListWidgetItem& item)
{
    return static_cast<std::size_t>(item.data(eventRole).toInt());
}

/// @throws FileError
void writePicture(const QImage& image, const std::string& path)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    if (!image.save(&buffer, "PNG"))
        throw FileError("The picture can't be made; there may be too little memory.");
    replaceFile(path, [&bytes](std::ostream& stream) { stream.write(bytes.constData(), bytes.size()); });
}

class QtLiveChart final : public LiveChart {
public:
    QtLiveChart(const LiveChartSurroundings& surroundings, QWidget* parent);

    void setRunning(bool isRunning) override;

protected:
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void connectControls();
    void listEvents();
    std::vector<std::size_t> checkedEvents() const;
    void drawChecked();
    void paint();
    void paintNames();
    void paintColours();
    void paintSamples();
    void look();
    void schedule();
    void zoom(double factor, double place);
    void pan(double part);
    void showAll();
    void savePicture();

    LiveChartSurroundings surroundings_;
    std::unique_ptr<Ui::liveChart> ui;
    ChartView* view_;
    ChartLines lines_;
    QTimer timer_; ///< until the next look at the store

    ChartData data_;
    std::uint64_t generation_ = 0; ///< of the store, when it was last looked at
    ChartRange range_;
    bool isRunning_ = false;
    double lookTime_ = 0; ///< milliseconds that the last look took, without painting
};

QtLiveChart::QtLiveChart(const LiveChartSurroundings& surroundings, QWidget* parent)
    : LiveChart(parent), surroundings_(surroundings), ui(std::make_unique<Ui::liveChart>()),
      view_(new ChartView(this)), lines_(*view_->chart(), *this, surroundings.design),
      data_(surroundings.design, surroundings.samples)
{
    ui->setupUi(this);
    view_->setObjectName(QStringLiteral("chartView"));
    view_->setAccessibleName(tr("Chart"));
    view_->setToolTip(tr("Drag to move in time, turn the wheel to zoom"));
    ui->chartSplitter->insertWidget(0, view_);
    ui->chartSplitter->setStretchFactor(0, 1); // the list keeps its width
    const int listWidth = fontMetrics().averageCharWidth() * 32;
    ui->chartSplitter->setSizes({3 * listWidth, listWidth});
    timer_.setSingleShot(true);
    connectControls();
    listEvents();
    drawChecked();
    paintColours();
}

void QtLiveChart::connectControls()
{
    static constexpr std::array<double, 3> windows = {60, 300, 900};
    ui->chartWindow->setCurrentIndex(1);
    connect(ui->chartWindow, &QComboBox::activated, this, [this](int index) {
        range_.setWindow(windows.at(static_cast<std::size_t>(index)));
        paint();
    });
    connect(ui->chartAll, &QPushButton::clicked, this, [this] { showAll(); });
    connect(ui->chartZoomIn, &QPushButton::clicked, this, [this] { zoom(ChartView::zoomStep, 0.5); });
    connect(ui->chartZoomOut, &QPushButton::clicked, this, [this] { zoom(1 / ChartView::zoomStep, 0.5); });
    connect(ui->chartSave, &QPushButton::clicked, this,
            [this] { surroundings_.ask([this] { savePicture(); }); });
    connect(ui->chartPause, &QPushButton::toggled, this, [this] { look(); });
    connect(ui->chartEvents, &QListWidget::itemChanged, this, [this] {
        drawChecked();
        paint();
    });
    connect(&timer_, &QTimer::timeout, this, [this] { look(); });
    view_->onZoom = [this](double factor, double place) { zoom(factor, place); };
    view_->onPan = [this](double part) { pan(part); };
    view_->onAll = [this] { showAll(); };
    view_->onPause = [this] { ui->chartPause->toggle(); };
    view_->onResized = [this] { paint(); };
}

void QtLiveChart::listEvents()
{
    const Design& design = surroundings_.design;
    const QSignalBlocker quiet(ui->chartEvents); // filled, not checked by the user
    int checked = 0;
    for (std::size_t event = 0; event < design.events.size(); ++event) {
        if (!data_.hasNumbers(event))
            continue;
        auto* item = new QListWidgetItem(toQt(eventName(design, event)), ui->chartEvents);
        item->setData(eventRole, static_cast<int>(event));
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
        item->setCheckState(checked++ < checkedAtFirst ? Qt::Checked : Qt::Unchecked);
    }
}

void QtLiveChart::setRunning(bool isRunning)
{
    if (isRunning == isRunning_ && generation_ == surroundings_.samples.generation())
        return;
    if (isRunning && !isRunning_)
        data_.startRun();
    isRunning_ = isRunning;
    look();
}

std::vector<std::size_t> QtLiveChart::checkedEvents() const
{
    std::vector<std::size_t> events;
    for (int row = 0; row < ui->chartEvents->count(); ++row) {
        const QListWidgetItem* item = ui->chartEvents->item(row);
        if (item->checkState() == Qt::Checked)
            events.push_back(eventOf(*item));
    }
    return events;
}

void QtLiveChart::drawChecked()
{
    lines_.draw(checkedEvents());
    paintSamples();
}

/// Looks what the store has. A chart that stands still shows no more than that the store was emptied.
void QtLiveChart::look()
{
    QElapsedTimer timer;
    timer.start();
    const std::uint64_t generation = surroundings_.samples.generation();
    if (!ui->chartPause->isChecked() || generation != generation_) {
        range_.setEnd(data_.end(), isRunning_);
        if (isVisible())
            paint();
    }
    generation_ = generation;
    lookTime_ = static_cast<double>(timer.nsecsElapsed()) / 1e6;
    schedule();
}

/// The next look: soon, but late enough on slow machines to leave the time to the polling.
void QtLiveChart::schedule()
{
    constexpr double soon = 200; // ms
    constexpr double late = 5000;
    constexpr double share = 10; // at most a tenth of the time is spent here
    if (!isRunning_ || !isVisible() || ui->chartPause->isChecked()) {
        timer_.stop();
        return;
    }
    const double spent = lookTime_ + view_->takePaintTime();
    timer_.start(static_cast<int>(std::clamp(spent * share, soon, late)));
}

/// Shows the lines of what the range tells.
void QtLiveChart::paint()
{
    lines_.paint(data_, range_);
    paintNames();
}

/// Lets the list tell what a line's unit is, and its limits where no axis does.
void QtLiveChart::paintNames()
{
    const QSignalBlocker quiet(ui->chartEvents); // shown, not checked by the user
    for (int row = 0; row < ui->chartEvents->count(); ++row) {
        QListWidgetItem* item = ui->chartEvents->item(row);
        const QString name = lines_.nameOf(eventOf(*item));
        if (item->text() != name)
            item->setText(name);
    }
}

/// Takes colours and fonts from the window.
void QtLiveChart::paintColours()
{
    view_->setBackgroundBrush(palette().color(QPalette::Base));
    lines_.paintColours();
    paintSamples();
}

/// Puts a piece of its line beside each name.
void QtLiveChart::paintSamples()
{
    const QSignalBlocker quiet(ui->chartEvents); // shown, not checked by the user
    for (int row = 0; row < ui->chartEvents->count(); ++row) {
        QListWidgetItem* item = ui->chartEvents->item(row);
        const QPixmap sample = lines_.sampleOf(eventOf(*item));
        item->setData(Qt::DecorationRole, sample.isNull() ? QVariant() : QIcon(sample)); // no empty place
    }
}

void QtLiveChart::zoom(double factor, double place)
{
    range_.zoom(factor, range_.from() + place * (range_.to() - range_.from()));
    paint();
}

void QtLiveChart::pan(double part)
{
    range_.pan(part * (range_.to() - range_.from()));
    paint();
}

void QtLiveChart::showAll()
{
    range_.showAll();
    paint();
}

/// Polling goes on while the user chooses a file; the picture is what was seen when the button was pressed.
void QtLiveChart::savePicture()
{
    std::vector<ChartName> names;
    for (const std::size_t event : checkedEvents())
        names.push_back({lines_.sampleOf(event), lines_.nameOf(event)});
    const QImage image = chartPicture(*view_, names);
    const std::string path = surroundings_.dialogs.chooseToSave(
        {.extension = "png", .filter = "Pictures (*.png)|*.png|All files (*.*)|*.*"},
        surroundings_.values.parmInitDir, "chart.png");
    if (path.empty())
        return;
    try {
        writePicture(image, path);
        surroundings_.values.rememberFolderOf(path);
    } catch (const FileError& error) { // told outside the gate, where it holds up nothing
        surroundings_.prompts.message(error.what());
    }
}

void QtLiveChart::changeEvent(QEvent* event)
{
    LiveChart::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange)
        paintColours();
}

void QtLiveChart::showEvent(QShowEvent* event)
{
    LiveChart::showEvent(event);
    look();
}

void QtLiveChart::hideEvent(QHideEvent* event)
{
    LiveChart::hideEvent(event);
    timer_.stop();
}

} // namespace

LiveChart* makeLiveChart(const LiveChartSurroundings& surroundings, QWidget* parent)
{
    return new QtLiveChart(surroundings, parent);
}

} // namespace zint
