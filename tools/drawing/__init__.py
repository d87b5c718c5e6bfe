"""What draw_pictures.py draws with."""
