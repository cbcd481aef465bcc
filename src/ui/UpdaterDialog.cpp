// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/UpdaterDialog.h"

#include "language/Translation.h"

#include <QApplication>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace orvane {

using namespace Qt::StringLiterals;

namespace {

// Points.
constexpr int textWidth = 420;
constexpr int notesHeight = 180;
constexpr int notesMargin = 8;
constexpr int margin = 20;
constexpr int spacing = 12;
/// The size of the headline relative to the desktop's text size.
constexpr double headlineScale = 1.25;
/// The maximum of the progress bar.
constexpr int barMaximum = 100;

/// Plain text, because the texts come from a server and could contain markup.
QLabel* plainLabel(const QString& text) {
    auto* label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setFixedWidth(textWidth);
    return label;
}

} // namespace

bool UpdaterDialog::isOpen() const {
    return m_dialog != nullptr;
}

void UpdaterDialog::bringToFront() {
    if (!m_dialog)
        return;
    m_dialog->setWindowState(m_dialog->windowState() & ~Qt::WindowMinimized);
    // Qt 6.8 moves a dialog that is shown already to the middle of the screen.
    if (!m_dialog->isVisible())
        m_dialog->show();
    m_dialog->raise();
    m_dialog->activateWindow();
}

void UpdaterDialog::close() {
    if (!m_dialog)
        return;
    m_dialog->hide();
    // Later, as this may be called by one of its signals.
    m_dialog.release()->deleteLater();
}

void UpdaterDialog::showSearch(const UpdaterMessage& message) {
    begin(message);
    addBar(message);
    m_bar->setRange(0, 0); // The duration is unknown.
    addButton(translated("Update", "Cancel"), UpdaterAnswer::dismissed);
    open();
}

void UpdaterDialog::showMessage(const UpdaterMessage& message) {
    begin(message);
    addButton(translated("Update", "Close"), UpdaterAnswer::dismissed);
    open();
}

void UpdaterDialog::showOffer(const UpdaterMessage& message, const QString& notes) {
    begin(message);
    if (!notes.isEmpty()) {
        auto* view = new QPlainTextEdit(notes);
        view->setReadOnly(true);
        view->setFixedHeight(notesHeight);
        view->document()->setDocumentMargin(notesMargin);
        view->setTabChangesFocus(true);
        view->setAccessibleName(translated("Update", "What is new"));
        m_content->layout()->addWidget(view);
    }
    addButton(translated("Update", "Later"), UpdaterAnswer::dismissed);
    addButton(translated("Update", "Download"), UpdaterAnswer::download);
    open();
}

void UpdaterDialog::showProgress(const UpdaterMessage& message) {
    begin(message);
    addBar(message);
    m_bar->setRange(0, barMaximum);
    m_text = plainLabel({});
    m_content->layout()->addWidget(m_text);
    addButton(translated("Update", "Cancel"), UpdaterAnswer::dismissed);
    open();
}

void UpdaterDialog::setProgress(double fraction, const QString& text) {
    if (!m_bar || !m_text)
        return;
    m_bar->setValue(static_cast<int>(fraction * barMaximum));
    m_text->setText(text);
}

void UpdaterDialog::makeDialog() {
    m_dialog = std::make_unique<QDialog>();
    m_dialog->setWindowTitle(translated("Update", "Orvane Update"));
    auto* layout = new QVBoxLayout(m_dialog.get());
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    QObject::connect(m_dialog.get(), &QDialog::rejected, m_dialog.get(),
                     [this] { answer(UpdaterAnswer::dismissed); });
}

void UpdaterDialog::begin(const UpdaterMessage& message) {
    if (!m_dialog)
        makeDialog();
    if (m_content) {
        // When a button with the focus is deleted, its dialog searches for another default button
        // among widgets that are being destroyed.
        if (QWidget* focused = m_dialog->focusWidget())
            focused->clearFocus();
        m_content->hide();
        m_dialog->layout()->removeWidget(m_content);
        m_content->deleteLater(); // This may be called by one of its buttons.
    }
    m_content = new QWidget;
    auto* column = new QVBoxLayout(m_content);
    column->setContentsMargins({});
    column->setSpacing(spacing);
    m_dialog->layout()->addWidget(m_content);

    QLabel* headline = plainLabel(message.headline);
    QFont font = headline->font();
    font.setBold(true);
    font.setPointSizeF(font.pointSizeF() * headlineScale);
    headline->setFont(font);
    column->addWidget(headline);
    if (!message.text.isEmpty())
        column->addWidget(plainLabel(message.text));
    m_buttons = new QDialogButtonBox(m_content);
}

void UpdaterDialog::addBar(const UpdaterMessage& message) {
    m_bar = new QProgressBar;
    m_bar->setAccessibleName(message.headline);
    m_bar->setTextVisible(false);
    m_content->layout()->addWidget(m_bar);
}

void UpdaterDialog::addButton(const QString& text, UpdaterAnswer meaning) {
    const auto role = meaning == UpdaterAnswer::download ? QDialogButtonBox::AcceptRole
                                                         : QDialogButtonBox::RejectRole;
    QPushButton* button = m_buttons->addButton(text, role);
    QObject::connect(button, &QPushButton::clicked, button, [this, meaning] { answer(meaning); });
    button->setFocus(); // The last button added is the default one.
}

void UpdaterDialog::open() {
    m_content->layout()->addWidget(m_buttons);
    // A change must not take the focus while the user works in another window.
    if (m_dialog->isVisible())
        QApplication::alert(m_dialog.get());
    else
        bringToFront();
}

} // namespace orvane
