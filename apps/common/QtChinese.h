#pragma once

class QCoreApplication;

namespace quarry::apps {

// Qt's own texts in Chinese (standard buttons, file dialogs, context menus)
// from the translations installed with Qt (Debian: qt6-translations-l10n),
// and the Chinese locale for dates and numbers. False when Qt's Chinese
// translation is not installed; the texts stay English then.
bool useChinese(QCoreApplication &app);

} // namespace quarry::apps
