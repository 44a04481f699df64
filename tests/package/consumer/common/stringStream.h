#error "This header is the application's own: the library must not come across it."
