#error "The preview library paints with Qt Gui only; widgets belong to the user interface."
