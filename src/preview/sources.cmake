# The toolpath preview: the model and the painter need Qt Gui only (brantok_preview, below);
# the Preview window is a form.
set(PREVIEW_SOURCES
    src/preview/toolpath.cpp
    src/preview/render.cpp
)
list(APPEND UI_SOURCES
    src/preview/preview_window.cpp
)
