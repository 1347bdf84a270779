# Tests of the components' dialogs on widgets.
