// A drop-down list for a screen reader: Qt's own reports neither its value when it gets the
// focus nor the new one at a change by key.
#pragma once

namespace veltrona {

class ComboBoxView;

/// Makes Qt ask here for each ComboBoxView; once is enough, more does no harm.
void installComboBoxAccessible();

/// The user has changed the value while the list is closed.
void notifyChoice(ComboBoxView &view);

} // namespace veltrona
