#error "This library is built with Qt Core only; widgets and GUI belong to the user interface."
