"""What the system tests and the tour stand on: a private desktop and, on it, sound, a laptop, the application."""
