"""What the system tests and the tour stand on: a private desktop, a sound server, a simulated laptop, the application."""
